// Whether bytes that windows-1252 can be read from are in another encoding: names of other
// languages and old programs come out as signs within words, and nothing else would tell.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

struct LetterDoubt {
  std::size_t offset = 0;           ///< of what shows it
  std::string why;                  ///< what would stand there, such as "M„ller"
  std::vector<std::string> likely;  ///< encodings, the most likely first
};

/// Empty where the text goes well with windows-1252.
std::optional<LetterDoubt> doubtWestern(std::string_view bytes);

}  // namespace velk
