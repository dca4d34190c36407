// Whether bytes that windows-1252 can be read from are in another encoding: names of other
// languages and old programs come out as other letters, or as signs within words.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

struct LetterDoubt {
  struct Reading {
    std::string encoding, word;
  };
  std::size_t offset = 0;  ///< of a word that shows it
  /// What the word would be, such as "Dvořák" in windows-1250, the likeliest first and windows-1252
  /// last.
  std::vector<Reading> readings;
};

/// Empty where windows-1252 explains the letters better than any other encoding.
std::optional<LetterDoubt> doubtWestern(std::string_view bytes);

}  // namespace velk
