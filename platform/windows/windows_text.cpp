#include "platform/windows/windows_text.h"

#include <windows.h>

namespace velk {

CodePage codePageOf(unsigned number) {
  std::array<char16_t, 128> upper{};
  for (std::size_t i = 0; i < upper.size(); ++i) {
    const char byte = static_cast<char>(0x80 + i);
    wchar_t character = 0;
    const int count = MultiByteToWideChar(number, 0, &byte, 1, &character, 1);
    // A byte without a character becomes the control of the same number, so that none is lost.
    upper[i] = count == 1 ? static_cast<char16_t>(character) : static_cast<char16_t>(0x80 + i);
  }
  return CodePage(upper);
}

CodePage activeCodePage() {
  constexpr UINT westEuropean = 1252;
  CPINFO info{};
  const UINT active = GetACP();
  // UTF-8 and double-byte pages do not fit into a table with one character for each byte.
  const bool singleByte = GetCPInfo(active, &info) != 0 && info.MaxCharSize == 1;
  if (!singleByte || active == westEuropean) return CodePage::windows1252();
  return codePageOf(active);
}

}  // namespace velk
