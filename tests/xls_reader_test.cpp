#include "platform/spreadsheet/xls/compound_layout.h"
#include "platform/spreadsheet/xls/records.h"
#include "platform/spreadsheet/xls/workbook_reader.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "tests/support/checks.h"
#include "tests/support/memory_files.h"
#include "tests/support/workbook_seeds.h"

namespace velk::xls {
namespace {

using namespace std::literals;

const ColumnSet allColumns = ColumnSet().set();

/// The description of the error that reading raises; empty when the file reads.
template <class Read>
std::string refusal(Read read) {
  try {
    read();
  } catch (const RuntimeError& error) {
    REQUIRE(error.is(ErrorNumber::InvalidFileFormat));
    return error.description();
  }
  return {};
}

/// A workbook stream, record by record: what the globals contain, then what the sheet contains.
struct Stream {
  std::string bytes;
  std::vector<std::size_t> entries;  // where the places of the sheets stand

  Stream& add(Record type, std::string_view payload) {
    appendNumber(bytes, static_cast<std::uint16_t>(type));
    appendNumber(bytes, static_cast<std::uint16_t>(payload.size()));
    bytes += payload;
    return *this;
  }
  Stream& begin(char kind, char version = 6) {
    return add(Record::Bof, std::string{'\0', version, kind, '\0', 0, 0, 0, 0});
  }
  Stream& sheetEntry(char type = 0) {
    entries.push_back(bytes.size() + recordHeaderSize);
    return add(Record::BoundSheet, std::string(5, '\0') + type + "\1\0S"s);
  }
  /// Ends a substream; the next one is that of the entry.
  Stream& next(std::size_t entry = 0) {
    add(Record::Eof, "");
    for (std::size_t i = 0; i < 4; ++i) {
      bytes[entries[entry] + i] = static_cast<char>(bytes.size() >> 8 * i);
    }
    return *this;
  }
};

Stream globals() {
  Stream stream;
  return stream.begin(5);
}

/// Texts of the row from the first column on, up to a blank.
Texts rowOf(const SheetContents& sheet, std::size_t row) {
  Texts texts;
  for (std::size_t column = 0; texts.empty() || !texts.back().empty(); ++column) {
    texts.push_back(sheet.text(row, column));
  }
  texts.pop_back();
  return texts;
}

Texts firstRow(Stream& stream) {
  return rowOf(readWorkbook(stream.add(Record::Eof, "").bytes, allColumns), 0);
}

/// Cell (0, column), format 0, and what follows.
std::string cell(char column, std::string_view rest) {
  return std::string{'\0', '\0', column, '\0', '\0', '\0'}.append(rest);
}

TEST_CASE("workbooks of other programs") {
  const struct {
    std::string file;
    int row;
    std::string texts;  // of the first seven cells
  } rows[] = {
      {"xlwt.xls", 1, "Salesman|Address|ResNumber|MobNumber|Existing DSType|DSType|HandHeld DS"},
      {"xlwt.xls", 2, "Ramesh Ünïcode|राम मोहन|2412345|9876543210||TRUE|"},
      {"xlwt.xls", 3, "123.45|0.3|31/03/2008|9876543210|(1,234,567.89)|😀|31-Mar-08 1:05 PM"},
      {"xlwt.xls", 5, "bold plain|1000.25|2000.25|3000.25|555-1234||"},
      {"xlwt.xls", 7, "merged||||||"},
      {"xlwt.xls", 65536, "||||||"},
      {"libreoffice.xls", 1, "Salesman|Größe €|||||"},
      {"libreoffice.xls", 2, "9876543210|123.45|0.0825|1|31/03/2008|1,234,567.89|"},
      {"libreoffice.xls", 3, "Salesman!|19753086420|#DIV/0!|FALSE|||"},
      {"libreoffice.xls", 5, "||last||||"}};
  MemoryFiles files;
  for (const auto& row : rows) {
    CAPTURE(row.file);
    files.contents[row.file] = workbookSeed(row.file);
    const auto sheet = XlsSpreadsheet(files).open(row.file, allColumns);
    std::string texts = sheet->text(row.row, 1);
    for (int column = 2; column <= 7; ++column) texts += "|" + sheet->text(row.row, column);
    CHECK(texts == row.texts);
    CHECK(sheet->rowCount() == (row.file == "xlwt.xls" ? 7 : 5));
    CHECK(errorOf([&] { sheet->text(0, 1); }) == 9);
    CHECK(errorOf([&] { sheet->text(1, 257); }) == 9);
  }
  CHECK(files.open == 0);
}

TEST_CASE("packed numbers are exact") {
  const std::pair<std::uint32_t, std::string> rows[] = {
      {12345U << 2 | 3, "123.45"}, {1U << 2 | 3, "0.01"},      {29U << 2 | 3, "0.29"},
      {0xFFFFFFFE, "-1"},          {0x80000002, "-536870912"}, {536870911U << 2 | 2, "536870911"},
      {0x3FF80000, "1.5"},         {0x40C81C81, "123.45"},     {0xC0590001, "-1"}};
  for (const auto& row : rows) {
    const std::uint32_t packed = row.first;
    const std::string& text = row.second;
    CAPTURE(packed);
    std::string bytes;
    appendNumber(bytes, packed);
    Stream stream = globals().sheetEntry().next().begin(0x10).add(Record::Rk, cell(0, bytes));
    const std::string shown = firstRow(stream).at(0);
    if (packed == 0x40C81C81) {  // a double cut to 30 bits, then a hundredth of it
      CHECK(shown.starts_with("123.45"));
    } else {
      CHECK(shown == text);
    }
  }
}

/// A formula of one token whose result is so; `flags` and `notes` as the program left them.
std::string formula(char column, std::string_view result, char flags = 0, char notes = 0) {
  return cell(column, std::string(result) + std::string{flags, 0, 0, 0, 0, notes, 1, 0, 1});
}

TEST_CASE("cells of every kind") {
  Stream stream = globals().sheetEntry(2).sheetEntry(0).next(0).begin(0x20).next(1).begin(0x10);
  const std::string two = "\0\0\0\0\0\0\0\x40"s;
  stream.add(Record::Dimensions, std::string(14, '\0'))
      .add(Record::Label, cell(0, "\3\0\0a\xE4!"sv))
      .add(Record::RString, cell(1, "\1\0\1\x39\x09\1\0\0\0\0\0"sv))
      .begin(0x20)  // a chart in the sheet
      .add(Record::Label, cell(2, "\1\0\0X"sv))
      .add(Record::Eof, "")
      .add(Record::Number, cell(2, two))
      .add(Record::MulRk, "\0\0\3\0\0\0\6\0\0\0\0\0\x0A\0\0\0\4\0"sv)
      .add(Record::BoolErr, cell(5, "\1\0"sv))
      .add(Record::BoolErr, cell(6, "\x17\1"sv))
      .add(Record::Formula, formula(7, two))
      .add(Record::Formula, formula(8, "\0\0\0\0\0\0\xFF\xFF"sv))
      .add(Record{0x04BC}, "a shared formula")
      .add(Record::String, "\4\0\0te"sv)
      .add(Record::Continue, "\0xt"sv)
      .add(Record::Formula, formula(9, "\1\0\0\0\0\0\xFF\xFF"sv))
      .add(Record::Formula, formula(10, "\2\0\x24\0\0\0\xFF\xFF"sv))
      .add(Record::Formula, formula(11, "\3\0\0\0\0\0\xFF\xFF"sv))
      .add(Record::Label, cell(1, "\1\0\0Z"sv));  // later, and out of order
  CHECK(firstRow(stream) ==
        Texts{"aä!", "Z", "2", "1", "2", "TRUE", "#REF!", "2", "text", "FALSE", "#NUM!"});
}

TEST_CASE("of columns that nobody wants the first row is kept") {
  Stream stream = globals().sheetEntry().next().begin(0x10);
  for (const char row : {'\0', '\1'}) {
    for (const char column : {'\0', '\1', '\2'}) {
      const std::string text = "\1\0\0x"s;
      stream.add(Record::Label, std::string{row, 0, column, 0, 0, 0} + text);
    }
  }
  stream.add(Record::MulRk, "\1\0\1\0\0\0\6\0\0\0\0\0\x0A\0\0\0\2\0"sv);
  const SheetContents sheet = readWorkbook(stream.add(Record::Eof, "").bytes, ColumnSet(2));
  CHECK(rowOf(sheet, 0) == Texts{"x", "x", "x"});
  CHECK(sheet.text(1, 0) + sheet.text(1, 1) + sheet.text(1, 2) == "1");
  CHECK(sheet.numbers.size() == 1);
}

TEST_CASE("shared texts across records") {
  Stream stream = globals().sheetEntry();
  stream.add(Record::SharedStrings, "\0\0\0\0\4\0\0\0\6\0\0ab"sv)
      .add(Record::Continue, "\1c\0\x39\x09"sv)  // wider from here
      .add(Record::Continue, "\0ef\2\0"sv)       // and narrower; a length, and its flags next
      .add(Record::Continue, "\1\x3D\xD8"sv)     // half a character
      .add(Record::Continue, "\1\0\xDE"sv)       // the other half
      .add(Record::Continue, "\2\0\x0C\1\0\3\0\0\0rs123"sv)  // a run of fonts, a phonetic part
      .add(Record::Continue, "4567"sv)
      .add(Record::Continue, "\2\0\0ok"sv)
      .next()
      .begin(0x10);
  for (char i = 0; i < 4; ++i) stream.add(Record::LabelSst, cell(i, std::string{i, 0, 0, 0}));
  CHECK(firstRow(stream) == Texts{"abcहef", "😀", "rs", "ok"});
}

TEST_CASE("dates from 1904, formats of cells") {
  Stream stream = globals().sheetEntry();
  stream.add(Record::DateMode, "\1\0"sv)
      .add(Record::ExtendedFormat, "\0\0\xA4\0"s + std::string(16, '\0'))
      .add(Record::Format, "\xA4\0\x0A\0\0dd/mm/yyyy"sv)
      .next()
      .begin(0x10)
      .add(Record::Rk, "\0\0\0\0\0\0\xF2\x52\x02\0"sv);
  CHECK(firstRow(stream) == Texts{"31/03/2008"});
}

// Made with the password of no password, and with "secret".
std::string veiled(const std::string& sum) {
  return "\0\0\x34\x12"s + sum;
}
std::string encrypted(const std::string& verifier) {
  return "\1\0\1\0\1\0ABCDEFGHIJKLMNOP"s + verifier;
}

TEST_CASE("streams that are refused") {
  const auto sheet = [] { return globals().sheetEntry().next().begin(0x10); };
  const std::pair<std::string, Stream> rows[] = {
      {"version 5.0/95", Stream().begin(5, 5)},
      {"version 5.0/95", Stream().add(Record::Bof4, "\0\0\x10\0"sv)},
      {"do not begin", Stream().add(Record::Label, "")},
      {"not listed", Stream().begin(0x10)},
      {"its structure is protected", globals().add(Record::FilePass, "")},
      {"though it opens without a password", globals().add(Record::FilePass, veiled("\x0A\x9A"))},
      {"with a password only", globals().add(Record::FilePass, veiled("\xA7\xDA"))},
      {"though it opens without a password",
       globals().add(Record::FilePass, encrypted("\xCA\x1D\x5B\xCF\x3C\x43\x0B\xB2\xDB\x53\x69"
                                                 "\xB6\x59\x14\x44\x02\xBA\x81\x1F\x09\x9C\x81"
                                                 "\xA8\x1B\x77\xCA\x5A\x17\x7F\x1A\x65\x96"))},
      {"with a password only",
       globals().add(Record::FilePass, encrypted("\xC7\xD7\x6F\x2E\x4D\x0D\xAB\x63\xB8\xD7\x49"
                                                 "\xC7\x89\x77\x9F\xC4\x93\x11\x9C\x04\x97\x6F"
                                                 "\x72\xD4\xBE\x07\xF5\xD5\xD6\x3E\x60\x5F"))},
      {"no worksheet", globals().add(Record::Eof, "")},
      {"no worksheet", globals().sheetEntry(2).add(Record::Eof, "")},
      {"no end", globals()},
      {"a sheet is missing", globals().sheetEntry().next()},
      {"no such as", globals().sheetEntry().next().begin(5)},
      {"no end", sheet()},
      {"longer than the rest", Stream{globals().bytes + "\x04\x02\xFF\xFF", {}}},
      {"length that it cannot have", sheet().add(Record::Number, cell(0, "1234567"))},
      {"length that it cannot have", sheet().add(Record{0x0999}, std::string(8225, 'x'))},
      {"too long", sheet().add(Record::Label, cell(0, "\1\0\0ab"sv))},
      {"too long", sheet().add(Record::Formula, formula(8, "\3\0\0\0\0\0\xFF\xFF"sv) + "xx")},
      {"no known kind", sheet().add(Record::Formula, formula(8, "\4\0\0\0\0\0\xFF\xFF"sv))},
      {"of a row are missing", sheet().add(Record::MulRk, "\0\0\3\0\0\0\6\0\0\0\4\0"sv)},
      {"of a row are missing", sheet().add(Record::MulBlank, "\0\0\3\0\0\0\0\0\3\0"sv)},
      {"format of a cell", globals()
                               .add(Record::ExtendedFormat, std::string(20, '\0'))
                               .sheetEntry()
                               .next()
                               .begin(0x10)
                               .add(Record::Rk, "\0\0\1\0\x09\0\xF2\x52\x02\0"sv)},
      {"other texts", globals().add(Record::SharedStrings, "\0\0\0\0\2\0\0\0\1\0\0a"sv)},
      {"in one place", globals().sheetEntry().sheetEntry().add(Record::Eof, "")},
      {"no such as", globals().sheetEntry(2).next().begin(0x10)},
      {"outside", sheet().add(Record::Number, "\0\0\0\1\0\0\0\0\0\0\0\0\0\0"sv)},
      {"outside", sheet().add(Record::MulRk, "\0\0\xFF\0\0\0\6\0\0\0\0\0\x0A\0\0\0\0\1"sv)},
      {"of a cell is missing", sheet().add(Record::LabelSst, cell(0, "\0\0\0\0"sv))},
      {"of a formula",
       sheet().add(Record::Formula, formula(8, "\0\0\0\0\0\0\xFF\xFF"sv)).add(Record::Eof, "")},
      {"text ends", sheet().add(Record::Label, cell(0, "\3\0\0ab"sv))},
      {"text ends",
       globals().add(Record::SharedStrings, "\0\0\0\0\0\0\0\0\1\0\4\xFF\xFF\xFF\xFFx"sv)},
      {"cut in two", sheet().add(Record::Label, cell(0, "\2\0\1a\0b"sv))}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    const std::string description = refusal([&] { readWorkbook(row.second.bytes, allColumns); });
    CAPTURE(description);
    CHECK(description.find(row.first) != std::string::npos);
  }
}

/// A file with a number at an offset replaced.
std::string patched(std::string file, std::size_t at, std::uint32_t value) {
  std::string bytes;
  appendNumber(bytes, value);
  return file.replace(at, 4, bytes);
}

TEST_CASE("files that are refused") {
  // The seed's stream takes sectors 0 to 7, its table of sectors in 8, its directory in 9.
  const std::string file = workbookSeed("xlwt.xls");
  const std::size_t table = static_cast<std::size_t>(file[headerTable] + 1) * 512;
  const std::size_t directory = static_cast<std::size_t>(file[headerFirstDirectory] + 1) * 512;
  const std::size_t size = directory + entrySize + 120;
  std::string renamed = file;
  renamed[directory + entrySize] = 'X';
  std::string biff5 = file;
  biff5.replace(directory + entrySize, 10, "B\0o\0o\0k\0\0\0"sv).replace(size - 56, 2, "\x0A\0"sv);
  const std::pair<std::string, std::string> rows[] = {
      {"is empty", ""},
      {"a text file", "Salesman,Address\r\n"},
      {"a web page", "\xEF\xBB\xBF \r\n<html>"},
      {"an .xlsx workbook", "PK\x03\x04 [Content_Types].xml"},
      {"an .ods workbook", "PK\x03\x04 mimetypeapplication/vnd.oasis.opendocument.spreadsheet"},
      {"version 4.0", "\x09\x04\x06\0\0\0\x10\0\0\0"s},
      {"without the compound file", "\x09\x08\x08\0\0\5\x10\0\0\0\0\0"s},
      {"without the compound file", workbookSeed("xlwt.stream")},
      {"in UTF-16", "\xFF\xFES\0"s},
      {"in UTF-16", "S\0a\0l\0e\0s\0"s},
      {"in UTF-16", "\0S\0a\0l\0e"s},
      {"no workbook", "\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s},
      {"within its header", file.substr(0, 100)},
      {"impossible size", patched(file, headerSectorShift, 5)},
      {"another application", renamed},
      {"version 5.0/95", biff5},
      {"in a circle", patched(file, table + 7 * 4, 0)},
      {"in a circle", patched(file, table + 3 * 4, 1)},
      {"or fewer sectors", patched(file, table + 3 * 4, endOfChain)},
      {"short streams", patched(file, headerMiniCutoff, 8192)},
      {"in a circle", patched(file, table + 9 * 4, 9)},
      {"behind its end", patched(file, table, 77)},
      {"missing in the table", patched(file, headerTable, freeSector)},
      {"longer than the file", patched(file, size, 0xFFFFFFFF)},
      {"more or fewer sectors", patched(file, size, 4097)},
      {"no root", patched(file, headerFirstDirectory, 0)}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    const std::string description = refusal([&] { readXls(row.second, allColumns); });
    CAPTURE(description);
    CHECK(description.find(row.first) != std::string::npos);
  }
  MemoryFiles files;
  files.contents["large.xls"] = file;
  files.claimedLength = 1U << 30U;
  CHECK(errorOf([&] { XlsSpreadsheet(files).open("large.xls", allColumns); }) == 7);
}

}  // namespace
}  // namespace velk::xls
