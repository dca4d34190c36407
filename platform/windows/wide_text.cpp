#include "platform/windows/wide_text.h"

#include "base/errors.h"
#include "base/text.h"

namespace velk {

std::wstring toWide(std::string_view text) {
  const std::u16string units = toUtf16(text);
  return {units.begin(), units.end()};
}

std::string fromWide(std::wstring_view text) {
  return toUtf8(std::u16string(text.begin(), text.end()));
}

Bstr::Bstr(std::string_view text) {
  const std::wstring wide = toWide(text);
  // With its length, because a text may contain a NUL.
  string_ = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (string_ == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
}

}  // namespace velk
