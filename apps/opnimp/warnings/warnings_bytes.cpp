// Warnings about a file's bytes: what they are and how its lines end.
#include <algorithm>
#include <string>

#include "apps/opnimp/warnings/warnings.h"
#include "base/text.h"

namespace velk {

namespace {

std::size_t lineAt(const std::string& bytes, std::size_t position) {
  const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(position);
  return static_cast<std::size_t>(std::count(bytes.begin(), end, '\n')) + 1;
}

bool isBareLineFeed(const std::string& bytes, std::size_t at) {
  return bytes[at] == '\n' && (at == 0 || bytes[at - 1] != '\r');
}

bool isBareReturn(const std::string& bytes, std::size_t at) {
  return bytes[at] == '\r' && (at + 1 == bytes.size() || bytes[at + 1] != '\n');
}

bool isNul(const std::string& bytes, std::size_t at) {
  return bytes[at] == '\0';
}

bool isUndefinedByte(const std::string& bytes, std::size_t at) {
  return std::string_view("\x81\x8D\x8F\x90\x9D").find(bytes[at]) != std::string_view::npos;
}

struct ByteWarning {
  std::string_view code;
  std::string_view text;
  bool (*found)(const std::string& bytes, std::size_t at);
};

constexpr ByteWarning lineFeeds{
    "bare-line-feeds",
    "Lines end at carriage return + line feed only: what stands behind a bare line feed belongs to "
    "the same record. Save the file with Windows line ends.",
    isBareLineFeed};
constexpr ByteWarning returns{
    "bare-carriage-returns",
    "Lines end at carriage return + line feed only: a bare carriage return is part of a value. "
    "Save the file with Windows line ends.",
    isBareReturn};
constexpr ByteWarning nuls{
    "nul-bytes", "A NUL byte splits a field in two. The file may be damaged, or be in UTF-16.",
    isNul};
constexpr ByteWarning undefinedBytes{
    "undefined-bytes",
    "The file holds bytes that stand for no character of the code page (windows-1252).",
    isUndefinedByte};

void warnOf(const ByteWarning& warning, const std::string& bytes, Warnings& warnings) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (!warning.found(bytes, at)) continue;
    const bool listed = count++ < Warnings::mostLines;
    warnings.add(warning.code, warning.text, listed ? lineAt(bytes, at) : 0);
  }
}

void warnOfMark(const std::string& bytes, Warnings& warnings) {
  if (bytes.starts_with("\xEF\xBB\xBF")) {
    warnings.add("byte-order-mark",
                 "The file begins with a byte-order mark, which becomes part of the first title: "
                 "that column is not mapped by its name. Save the file without it, or use --map "
                 "with #1.",
                 1);
  } else if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    warnings.add("utf-16",
                 "The file is in UTF-16, of which no title or value is understood. Save it as "
                 "windows-1252 text.",
                 1);
  }
}

bool isUtf8(std::string_view bytes) {
  return toUtf8(toUtf16(bytes)) == bytes;
}

}  // namespace

void warnOfBytes(const CsvRecords& input, Warnings& warnings) {
  const std::string& bytes = input.bytes();
  warnOfMark(bytes, warnings);
  for (const ByteWarning& warning : {lineFeeds, returns, nuls}) warnOf(warning, bytes, warnings);
  if (isAscii(bytes)) return;
  const std::size_t mark = bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0;
  const std::string_view text = std::string_view(bytes).substr(mark);
  if (isAscii(text)) return;
  if (isUtf8(text)) {
    warnings.add(
        "utf-8",
        "The file looks like UTF-8, but is read as windows-1252: letters beyond ASCII come "
        "out as two or three others. Save it as windows-1252 (\"ANSI\").",
        0);
  } else {
    warnOf(undefinedBytes, bytes, warnings);
  }
}

}  // namespace velk
