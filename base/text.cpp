#include "base/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace velk {

namespace {

// Unicode's own character for what could not be read.
constexpr char32_t replacement = 0xFFFD;

struct Character {
  char32_t code = replacement;
  std::size_t length = 1;  // in units of the text it was read from
};

/// The length of the run of ASCII at the start of bytes or UTF-16. Blocks first, which the compiler
/// turns into a few wide instructions: most texts are ASCII throughout.
template <class Unit>
std::size_t runOfAscii(std::basic_string_view<Unit> text) {
  using Bits = std::make_unsigned_t<Unit>;
  constexpr std::size_t blockSize = 64 / sizeof(Unit);
  std::size_t run = 0;
  for (; run + blockSize <= text.size(); run += blockSize) {
    Bits all = 0;
    for (std::size_t i = 0; i < blockSize; ++i) all |= static_cast<Bits>(text[run + i]);
    if (all >= 0x80) break;
  }
  while (run < text.size() && static_cast<Bits>(text[run]) < 0x80) ++run;
  return run;
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}
bool isSurrogate(char32_t code) {
  return code >= 0xD800 && code <= 0xDFFF;
}

/// The length that a leading byte announces; 1 for a byte that cannot lead.
std::size_t announcedLength(unsigned char lead) {
  // C0, C1 and F5 to FF never occur in UTF-8; 80 to BF only continue a character.
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 1;
}

/// The first character of UTF-8 that is not empty; a byte that starts no valid sequence is a
/// replacement character by itself.
Character firstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = announcedLength(lead);
  if (length == 1 || length > text.size()) return {};
  // A lead byte begins with as many ones as the character has bytes, and a zero.
  char32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[i])) return {};
    code = code << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  // Longer forms than needed are no UTF-8: they hide characters from those who look for them.
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  if (overlong || isSurrogate(code) || code > 0x10FFFF) return {};
  return {code, length};
}

Character firstCharacter(std::u16string_view text) {
  const char32_t unit = text[0];
  if (!isSurrogate(unit)) return {unit, 1};
  const char32_t next = text.size() > 1 ? text[1] : 0;
  // A second half that comes first, or a first half without its second one.
  if (unit >= 0xDC00 || next < 0xDC00 || next > 0xDFFF) return {};
  return {0x10000 + ((unit - 0xD800) << 10U) + (next - 0xDC00), 2};
}

void appendUtf8(std::string& to, char32_t code) {
  const auto append = [&to](char32_t byte) { to += static_cast<char>(byte); };
  const auto appendTail = [&](unsigned shift) { append(0x80U | (code >> shift & 0x3FU)); };
  if (code < 0x80) return append(code);
  if (code < 0x800) {
    append(0xC0U | code >> 6U);
  } else if (code < 0x10000) {
    append(0xE0U | code >> 12U);
    appendTail(6);
  } else {
    append(0xF0U | code >> 18U);
    appendTail(12);
    appendTail(6);
  }
  appendTail(0);
}

void appendUtf16(std::u16string& to, char32_t code) {
  if (code < 0x10000) {
    to += static_cast<char16_t>(code);
    return;
  }
  to += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10U));
  // The ten lowest bits of 0x10000 are zero, so that it need not be subtracted here.
  to += static_cast<char16_t>(0xDC00 + (code & 0x3FFU));
}

/// Hands the runs of ASCII and the characters between them, in order, to the two functions.
template <typename AddRun, typename AddCharacter>
void forEachPiece(std::string_view text, AddRun addRun, AddCharacter addCharacter) {
  while (!text.empty()) {
    const std::size_t run = runOfAscii(text);
    addRun(text.substr(0, run));
    text.remove_prefix(run);
    while (!text.empty() && static_cast<unsigned char>(text[0]) >= 0x80) {
      const Character character = firstCharacter(text);
      addCharacter(character.code);
      text.remove_prefix(character.length);
    }
  }
}

}  // namespace

CodePage::CodePage(const std::array<char16_t, 128>& upper) : upper_(upper) {
  for (std::size_t byte = 0; byte < utf8_.size(); ++byte) {
    appendUtf8(utf8_[byte], byte < 0x80 ? static_cast<char32_t>(byte) : upper[byte - 0x80]);
  }
}

const CodePage& CodePage::windows1252() {
  static const CodePage page = [] {
    std::array<char16_t, 128> upper{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    // From byte A0 on the page is Latin-1.
    for (std::size_t i = 32; i < upper.size(); ++i) upper[i] = static_cast<char16_t>(0x80 + i);
    return CodePage(upper);
  }();
  return page;
}

std::string CodePage::decode(std::string_view bytes) const {
  std::string text;
  text.reserve(bytes.size());
  appendDecoded(text, bytes);
  return text;
}

void CodePage::appendDecoded(std::string& to, std::string_view bytes) const {
  while (!bytes.empty()) {
    const std::size_t run = runOfAscii(bytes);
    to.append(bytes.substr(0, run));
    bytes.remove_prefix(run);
    for (; !bytes.empty() && static_cast<unsigned char>(bytes[0]) >= 0x80; bytes.remove_prefix(1)) {
      to += utf8_[static_cast<unsigned char>(bytes[0])];
    }
  }
}

std::string CodePage::encode(std::string_view text) const {
  std::string bytes;
  bytes.reserve(text.size());
  appendEncoded(bytes, text);
  return bytes;
}

std::size_t CodePage::appendEncoded(std::string& to, std::string_view text) const {
  std::size_t lacking = 0;
  // Never gets ASCII, which comes in runs; so the index below is not negative.
  const auto addCharacter = [&](char32_t code) {
    // Most pages keep most of Latin-1 in its own place.
    if (code < 0x100 && upper_[code - 0x80] == code) {
      to += static_cast<char>(code);
      return;
    }
    const auto found = std::find(upper_.begin(), upper_.end(), code);
    if (found == upper_.end()) ++lacking;
    to += found == upper_.end() ? '?' : static_cast<char>(0x80 + (found - upper_.begin()));
  };
  forEachPiece(
      text, [&](std::string_view run) { to.append(run); }, addCharacter);
  return lacking;
}

std::size_t asciiRun(std::string_view bytes) {
  return runOfAscii(bytes);
}

bool isAscii(std::string_view bytes) {
  return runOfAscii(bytes) == bytes.size();
}

std::size_t findInvalidUtf8(std::string_view text) {
  for (std::size_t at = runOfAscii(text); at < text.size();) {
    const Character character = firstCharacter(text.substr(at));
    // Only what could not be read is a replacement of one byte.
    if (character.code == replacement && character.length == 1) return at;
    at += character.length;
    if (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) {
      at += runOfAscii(text.substr(at));
    }
  }
  return std::string_view::npos;
}

std::u16string toUtf16(std::string_view text) {
  std::u16string units;
  // Always enough: no UTF-8 text has more UTF-16 units than bytes.
  units.reserve(text.size());
  forEachPiece(
      text, [&](std::string_view run) { units.append(run.begin(), run.end()); },
      [&](char32_t code) { appendUtf16(units, code); });
  return units;
}

std::string toUtf8(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  while (!text.empty()) {
    const std::size_t run = runOfAscii(text);
    const std::size_t length = bytes.size();
    bytes.resize(length + run);
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(run),
                   bytes.begin() + static_cast<std::ptrdiff_t>(length),
                   [](char16_t unit) { return static_cast<char>(unit); });
    text.remove_prefix(run);
    while (!text.empty() && text[0] >= 0x80) {
      const Character character = firstCharacter(text);
      appendUtf8(bytes, character.code);
      text.remove_prefix(character.length);
    }
  }
  return bytes;
}

std::string_view trim(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

// Not std::tolower, because its answer depends on the locale of the host's process.
char lowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

std::string lowerAscii(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = lowerAscii(c);
  return result;
}

std::string upperAscii(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - ('a' - 'A'));
  }
  return result;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) { return lowerAscii(x) == lowerAscii(y); });
}

std::size_t lastCharacter(std::string_view text) {
  // A valid character that reaches the end is the last one; else it is a stray byte.
  constexpr std::size_t longest = 4;
  for (std::size_t length = 2; length <= std::min(longest, text.size()); ++length) {
    const std::size_t start = text.size() - length;
    if (firstCharacter(text.substr(start)).length == length) return start;
  }
  return text.size() - 1;
}

}  // namespace velk
