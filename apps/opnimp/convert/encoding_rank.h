// Encodings of single bytes, by how well the words of a file go with them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velk {

struct RankedEncoding {
  std::string name;
  unsigned cost = 0;               ///< of all words, in fourths of a power of ten: less is likelier
  std::vector<std::string> words;  ///< as they read in it, in UTF-8
};

/// windows-1252 and what other encodings read otherwise, the likeliest first; of those that read
/// all words alike the most usual one. The words have bytes beyond ASCII and no line ends.
std::vector<RankedEncoding> rankEncodings(const std::vector<std::string_view>& words);

}  // namespace velk
