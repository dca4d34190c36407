// How often letters follow each other in the languages that company files have names of.
#pragma once

#include <span>
#include <string_view>

namespace velk {

struct LetterPairs {
  std::u16string_view letters;  ///< of the language, in lower case
  unsigned rarity;              ///< added to the cost of every word: few files are in it
  /// Of each letter behind each, row by row, that of a word's edge being the first: "A" for
  /// certainty, and a letter more for each factor of 1.78 (four for ten) that it is rarer.
  std::string_view costs;
};

std::span<const LetterPairs> letterPairs();

}  // namespace velk
