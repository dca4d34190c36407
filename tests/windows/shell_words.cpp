#include "tests/support/shell_words.h"

#include <windows.h>

#include <shellapi.h>

#include "platform/windows/wide_text.h"

namespace velk {

std::vector<std::string> shellWords(const std::string& command) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(toWide(command).c_str(), &count);
  std::vector<std::string> split;
  for (int i = 0; i < count; ++i) split.push_back(fromWide(words[i]));
  LocalFree(words);
  return split;
}

}  // namespace velk
