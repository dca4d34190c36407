#include "apps/opnimp/warnings/warnings_bytes.h"

#include <string>

#include "base/text.h"

namespace velk {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// One byte of a file, with its neighbours in reach.
struct Byte {
  std::string_view bytes;
  std::size_t at;

  char value() const { return bytes[at]; }
  bool follows(char c) const { return at > 0 && bytes[at - 1] == c; }
  bool precedes(char c) const { return at + 1 < bytes.size() && bytes[at + 1] == c; }
};

constexpr WarningCheck<std::string_view> marks[] = {
    {{"byte-order-mark",
      "The file begins with a byte-order mark, which becomes part of the first title: that column "
      "is not mapped by its name. Save the file without it, or use --map with #1."},
     [](const std::string_view& bytes) { return bytes.starts_with(utf8Mark); }},
    {{"utf-16",
      "The file is in UTF-16, of which no title or value is understood. Save it as windows-1252 "
      "text."},
     [](const std::string_view& bytes) {
       return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
     }},
};

constexpr WarningCheck<Byte> anyByte[] = {
    {{"bare-line-feeds",
      "Lines end at carriage return + line feed only: what stands behind a bare line feed belongs "
      "to the same record. Save the file with Windows line ends."},
     [](const Byte& byte) { return byte.value() == '\n' && !byte.follows('\r'); }},
    {{"bare-carriage-returns",
      "Lines end at carriage return + line feed only: a bare carriage return is part of a value. "
      "Save the file with Windows line ends."},
     [](const Byte& byte) { return byte.value() == '\r' && !byte.precedes('\n'); }},
    {{"nul-bytes", "A NUL byte splits a field in two. The file may be damaged, or be in UTF-16."},
     [](const Byte& byte) { return byte.value() == '\0'; }},
};

constexpr WarningCheck<Byte> undefinedByte{
    {"undefined-bytes",
     "The file holds bytes that stand for no character of the code page (windows-1252)."},
    [](const Byte& byte) {
      return std::string_view("\x81\x8D\x8F\x90\x9D").find(byte.value()) != std::string_view::npos;
    }};

constexpr WarningText readAsOther{
    "utf-8",
    "The file looks like UTF-8, but is read as windows-1252: letters beyond ASCII come out as two "
    "or three others. Save it as windows-1252 (\"ANSI\")."};

std::size_t lineAt(std::string_view bytes, std::size_t position) {
  return static_cast<std::size_t>(std::ranges::count(bytes.substr(0, position), '\n')) + 1;
}

// Finding the line means reading the file from its start: only for findings that are listed.
void warnOf(const WarningCheck<Byte>& check, std::string_view bytes, Warnings& warnings) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (!check.applies({bytes, at})) continue;
    warnings.add(check.warning,
                 count++ < Warnings::mostLines ? lineAt(bytes, at) : Warnings::wholeFile);
  }
}

// What is no UTF-8 comes back as U+FFFD.
bool isUtf8(std::string_view bytes) {
  return toUtf8(toUtf16(bytes)) == bytes;
}

}  // namespace

void warnOfBytes(const CsvRecords& input, Warnings& warnings) {
  std::string_view bytes = input.bytes();
  warnings.add(firstWarning(marks, bytes), 1);
  for (const WarningCheck<Byte>& check : anyByte) warnOf(check, bytes, warnings);
  const std::string_view text =
      bytes.substr(bytes.starts_with(utf8Mark) ? utf8Mark.size() : 0);  // it is no letter
  if (isAscii(text)) return;
  if (isUtf8(text)) {
    warnings.add(readAsOther, Warnings::wholeFile);
  } else {
    warnOf(undefinedByte, bytes, warnings);
  }
}

}  // namespace velk
