// Text as Windows and COM want it: UTF-16, and as BSTR.
#pragma once

#include <ole2.h>

#include <string>
#include <string_view>
#include <utility>

namespace velk {

std::wstring toWide(std::string_view text);
std::string fromWide(std::wstring_view text);

/// Owns one automation string. The null string is the empty text.
class Bstr {
 public:
  Bstr() = default;
  /// Error 7 when there is no memory.
  explicit Bstr(std::string_view text);
  Bstr(Bstr&& other) noexcept : string_(other.release()) {}
  Bstr& operator=(Bstr&&) = delete;
  ~Bstr() { SysFreeString(string_); }

  BSTR get() const { return string_; }
  std::string text() const { return textOf(string_); }
  BSTR* receive() { return &string_; }  ///< of an empty one
  BSTR release() { return std::exchange(string_, nullptr); }

  static std::string textOf(BSTR string) {
    return string == nullptr ? std::string() : fromWide({string, SysStringLen(string)});
  }

 private:
  BSTR string_ = nullptr;
};

}  // namespace velk
