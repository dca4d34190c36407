// Text at the edges: the system's single-byte code page on one side, UTF-8 on the other.
//
// Inside the system every text is UTF-8. Files and the error log are in the code page; COM, Win32
// and ODBC are UTF-16.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace velk {

/// One single-byte code page. Bytes 0x00 to 0x7F are ASCII in all of them.
class CodePage {
 public:
  /// `upper` gives the character of each byte from 0x80 to 0xFF.
  explicit CodePage(const std::array<char16_t, 128>& upper);

  /// windows-1252. Its five undefined bytes (81, 8D, 8F, 90, 9D) are the C1 controls of the
  /// same number, both ways, so that no byte is lost.
  static const CodePage& windows1252();

  /// Bytes to UTF-8. Every byte has a character.
  std::string decode(std::string_view bytes) const;
  /// The same, at the end of a text.
  void appendDecoded(std::string& to, std::string_view bytes) const;

  /// UTF-8 to bytes; a character that the page lacks, and each byte that is no UTF-8, becomes "?".
  std::string encode(std::string_view text) const;
  /// The same, at the end of a text; answers how many characters became "?".
  std::size_t appendEncoded(std::string& to, std::string_view text) const;

 private:
  std::array<char16_t, 128> upper_;
  std::array<std::string, 256> utf8_;  // of each byte
};

/// How many bytes at the start are below 0x80.
std::size_t asciiRun(std::string_view bytes);
/// True when all bytes are.
bool isAscii(std::string_view bytes);

/// Where the first byte is that is no UTF-8; npos if there is none.
std::size_t findInvalidUtf8(std::string_view text);

/// UTF-8 to UTF-16 and back. What is no valid UTF-8 or UTF-16 becomes U+FFFD.
std::u16string toUtf16(std::string_view text);
std::string toUtf8(std::u16string_view text);

/// Without the blanks (U+0020 only) at both ends.
std::string_view trim(std::string_view text);

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Letters A to Z in lower or upper case; every other character unchanged.
char lowerAscii(char c);
std::string lowerAscii(std::string_view text);
std::string upperAscii(std::string_view text);
bool equalsIgnoringCase(std::string_view a, std::string_view b);

/// Start of the last character (code point) of a text that is not empty.
std::size_t lastCharacter(std::string_view text);

}  // namespace velk
