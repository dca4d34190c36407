#include "platform/native/named_encodings.h"

#include <windows.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr std::pair<std::string_view, UINT> known[] = {
    {"us-ascii", 20127},   {"iso-8859-1", 28591}, {"iso-8859-2", 28592},  {"iso-8859-3", 28593},
    {"iso-8859-4", 28594}, {"iso-8859-5", 28595}, {"iso-8859-6", 28596},  {"iso-8859-7", 28597},
    {"iso-8859-8", 28598}, {"iso-8859-9", 28599}, {"iso-8859-13", 28603}, {"iso-8859-15", 28605},
    {"koi8-r", 20866},     {"koi8-u", 21866},     {"macintosh", 10000},   {"shift_jis", 932},
    {"gbk", 936},          {"gb18030", 54936},    {"big5", 950},          {"euc-kr", 51949},
    {"euc-jp", 20932}};

/// A code page by its number behind "windows-", "cp" or "ibm", or by a name.
std::optional<UINT> codePageOf(std::string_view name) {
  std::string lower = lowerAscii(name);
  const auto* const found =
      std::ranges::find(known, lower, &std::pair<std::string_view, UINT>::first);
  if (found != std::end(known)) return found->second;
  for (const std::string_view prefix : {"windows-", "cp", "ibm"}) {
    if (lower.starts_with(prefix))
      return exactNumber<UINT>(std::string_view(lower).substr(prefix.size()));
  }
  return std::nullopt;
}

}  // namespace

bool knowsEncoding(const std::string& name) {
  const std::optional<UINT> page = codePageOf(name);
  return page && IsValidCodePage(*page) != FALSE;
}

std::string decodeNamed(const std::string& name, std::string_view bytes) {
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw RuntimeError(ErrorNumber::OutOfMemory);
  }
  const UINT page = codePageOf(name).value();
  const int size = static_cast<int>(bytes.size());
  const int length = MultiByteToWideChar(page, 0, bytes.data(), size, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(page, 0, bytes.data(), size, text.data(), length);
  return fromWide(text);
}

}  // namespace velk
