#include "apps/opnimp/convert/source_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/convert/letter_doubt.h"
#include "base/text.h"
#include "platform/native/named_encodings.h"

namespace velk {

namespace {

constexpr std::string_view utf8 = "UTF-8";
constexpr std::string_view littleEndian = "UTF-16LE";
constexpr std::string_view bigEndian = "UTF-16BE";
constexpr std::string_view windows = "windows-1252";

struct Mark {
  std::string_view bytes;
  std::string_view encoding;
};
constexpr std::array<Mark, 3> marks{
    {{"\xEF\xBB\xBF", utf8}, {"\xFF\xFE", littleEndian}, {"\xFE\xFF", bigEndian}}};

/// Letters and digits in lower case: "Windows-1252" is "windows1252".
std::string plainName(std::string_view name) {
  std::string plain = lowerAscii(name);
  std::erase_if(plain, [](char c) { return c == '-' || c == '_' || c == ' '; });
  return plain;
}

bool isNamed(const std::string& name, std::string_view encoding) {
  const std::string plain = plainName(name);
  return plain == plainName(encoding) || (encoding == windows && plain == "cp1252");
}

/// The units of UTF-16 in the order of the machines that the program runs on, or the other one.
std::u16string unitsOf(std::string_view bytes, bool isBigEndian) {
  std::u16string units(bytes.size() / 2, u'\0');
  std::memcpy(units.data(), bytes.data(), units.size() * 2);
  if (!isBigEndian) return units;
  for (char16_t& unit : units) unit = static_cast<char16_t>(unit << 8U | unit >> 8U);
  return units;
}

// In blocks, so that a long text takes no memory beside the result.
std::string decodeWide(std::string_view bytes, bool isBigEndian) {
  constexpr std::size_t blockSize = std::size_t{1} << 15;
  std::string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size();) {
    std::u16string units = unitsOf(bytes.substr(at, blockSize), isBigEndian);
    const bool isCut = units.size() > 1 && units.back() >= 0xD800 && units.back() < 0xDC00;
    if (isCut) units.pop_back();  // the first half of a character
    text += toUtf8(units);
    at += units.size() * 2;
  }
  if (bytes.size() % 2 != 0) text.append("\xEF\xBF\xBD");  // half a character
  return text;
}

/// The half of the pairs in a text of Western letters that is always NUL; empty for other texts.
std::string_view orderOfNuls(std::string_view bytes) {
  constexpr std::size_t looked = 4096;
  std::array<std::size_t, 2> nuls{};
  const std::size_t length = std::min(bytes.size(), looked) / 2 * 2;
  for (std::size_t i = 0; i < length; ++i) nuls[i % 2] += bytes[i] == '\0' ? 1 : 0;
  const std::size_t many = length / 2 * 3 / 4;
  if (length == 0 || bytes.size() % 2 != 0) return {};
  if (nuls[1] > many && nuls[0] == 0) return littleEndian;
  return nuls[0] > many && nuls[1] == 0 ? bigEndian : std::string_view();
}

std::string lineText(std::string_view text, std::size_t offset) {
  return "line " + std::to_string(lineAt(text, offset));
}

/// The first letter beyond ASCII that is UTF-8, in a text that is not all of it.
std::size_t findLetter(std::string_view text, std::size_t from) {
  while (from < text.size()) {
    const std::string_view rest = text.substr(from);
    const std::size_t invalid = std::min(findInvalidUtf8(rest), rest.size());
    const std::size_t letter = asciiRun(rest.substr(0, invalid));
    if (letter < invalid) return from + letter;
    from += invalid + 1;
  }
  return std::string_view::npos;
}

}  // namespace

std::size_t lineAt(std::string_view text, std::size_t offset) {
  return static_cast<std::size_t>(std::ranges::count(text.substr(0, offset), '\n')) + 1;
}

SourceText::SourceText(std::string_view bytes, const ConvertOptions& options) {
  const std::string& wanted = options.encoding;
  if (takeMarked(bytes, wanted)) return;
  if (!wanted.empty()) {
    takeNamed(bytes, options);
    doubtNamed(bytes, wanted);
  } else if (!takeWide(bytes)) {
    takeFound(bytes);
  }
}

void SourceText::assume(std::string_view encoding, std::string reason) {
  assumption_ = {"encoding", std::string(encoding), std::move(reason), "--encoding NAME"};
}

void SourceText::decode(std::string_view bytes, std::string_view encoding) {
  utf8_ = encoding != windows;
  if (encoding == littleEndian || encoding == bigEndian) {
    decoded_ = decodeWide(bytes, encoding == bigEndian);
    text_ = decoded_;
  } else {
    text_ = bytes;
  }
}

/// UTF-16 that is asked for by its name may have a mark that tells its order.
bool SourceText::takeMarked(std::string_view bytes, const std::string& wanted) {
  const auto* const mark = std::ranges::find_if(
      marks, [&](const Mark& known) { return bytes.starts_with(known.bytes); });
  if (mark == marks.end()) return false;
  const bool isWide = mark->encoding != utf8;
  const bool fits =
      wanted.empty() || isNamed(wanted, mark->encoding) || (isWide && isNamed(wanted, "UTF-16"));
  if (!fits) return false;
  decode(bytes.substr(mark->bytes.size()), mark->encoding);
  assume(mark->encoding, "the file begins with its byte-order mark");
  return true;
}

bool SourceText::takeWide(std::string_view bytes) {
  const std::string_view order = orderOfNuls(bytes);
  if (order.empty()) return false;
  decode(bytes, order);
  assume(order, std::string("every ") + (order == littleEndian ? "second" : "first") +
                    " byte of a pair is NUL, as in UTF-16 without a mark");
  return true;
}

// Text of single bytes has its letters where UTF-8 has them by no chance: another program's file,
// read by the option of the one before.
void SourceText::doubtNamed(std::string_view bytes, const std::string& name) {
  const std::size_t first = asciiRun(bytes);
  const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
  const bool isOfBytes =
      !utf8_ || static_cast<std::size_t>(std::ranges::count_if(text_, begins)) == bytes.size();
  if (first == bytes.size() || !isOfBytes || findInvalidUtf8(bytes) != std::string_view::npos) {
    return;
  }
  refusal_ = "the encoding was given as " + name + ", but all letters beyond ASCII, the first in " +
             lineText(bytes, first) + ", are UTF-8: give --encoding UTF-8, or leave it out";
}

void SourceText::takeNamed(std::string_view bytes, const ConvertOptions& options) {
  const std::string& name = options.encoding;
  canonical_ = isNamed(name, windows) || isAscii(bytes);
  assume(name, options.origin("--encoding"));
  for (const std::string_view own : {utf8, littleEndian, bigEndian, windows}) {
    if (isNamed(name, own)) return decode(bytes, own);
  }
  if (!knowsEncoding(name)) {
    throw UsageError("--encoding: there is no encoding \"" + name +
                     "\"; there is UTF-8, UTF-16LE, UTF-16BE, windows-1252, and others by their "
                     "usual names, such as windows-1250, ISO-8859-15 or IBM850");
  }
  canonical_ = false;
  utf8_ = true;
  decoded_ = decodeNamed(name, bytes);
  text_ = decoded_;
}

// Text in another encoding is UTF-8 by chance only if it has next to no letters beyond ASCII.
void SourceText::takeFound(std::string_view bytes) {
  const std::size_t first = asciiRun(bytes);
  if (first == bytes.size()) {
    canonical_ = true;
    text_ = bytes;
    return;
  }
  const std::size_t invalid = findInvalidUtf8(bytes);
  if (invalid == std::string_view::npos) {
    decode(bytes, utf8);
    return assume(
        utf8, "all letters beyond ASCII, the first in " + lineText(bytes, first) + ", are UTF-8");
  }
  canonical_ = true;
  decode(bytes, windows);
  std::string reason = lineText(bytes, invalid) + " is no UTF-8";
  if (const std::size_t other = findLetter(bytes, first); other != std::string_view::npos) {
    refusal_ = reason + ", but " + lineText(bytes, other) +
               " has letters in it: correct one of them, or say which it is with --encoding NAME";
  }
  doubtFound(bytes);
  assume(windows, std::move(reason));
}

void SourceText::doubtFound(std::string_view bytes) {
  const std::optional<LetterDoubt> doubt = doubtWestern(bytes);
  if (!doubt) return;
  if (refusal_.empty()) {
    refusal_ = "the file is no UTF-8, and does not decide what it is: say so with --encoding NAME";
  }
  refusal_ += "; " + lineText(bytes, doubt->offset) + " has ";
  for (const LetterDoubt::Reading& reading : doubt->readings) {
    choices_.push_back("--encoding " + reading.encoding);
    refusal_.append(choices_.size() > 1 ? ", " : "")
        .append("\"" + printable(reading.word) + "\" with " + choices_.back());
  }
}

}  // namespace velk
