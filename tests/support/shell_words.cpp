#include "tests/support/shell_words.h"

#include <doctest/doctest.h>
#include <wordexp.h>

namespace velk {

std::vector<std::string> shellWords(const std::string& command) {
  wordexp_t words{};
  REQUIRE(::wordexp(command.c_str(), &words, WRDE_NOCMD | WRDE_UNDEF) == 0);
  std::vector<std::string> split(words.we_wordv, words.we_wordv + words.we_wordc);
  ::wordfree(&words);
  return split;
}

}  // namespace velk
