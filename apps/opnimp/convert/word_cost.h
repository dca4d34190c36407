// How unlikely a text is as a word of a language: what tells in which encoding its letters are
// letters at all.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace velk {

class WordCost {
 public:
  WordCost();

  /// In each of the languages, in fourths of a power of ten.
  std::vector<unsigned> of(std::u16string_view word) const;

 private:
  /// The place of each letter in the rows of its language; 0 is the edge of a word.
  struct Language {
    std::vector<std::uint8_t> places;
    std::size_t width = 0;
    std::string_view costs;
    unsigned rarity = 0;
  };
  static unsigned pairCost(const Language& language, char16_t before, char16_t letter);

  std::vector<Language> languages_;
};

}  // namespace velk
