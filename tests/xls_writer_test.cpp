#include <tuple>

#include "platform/spreadsheet/xls/compound_layout.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "tests/support/checks.h"
#include "tests/support/memory_files.h"
#include "tests/support/xls_records.h"

namespace velk::xls {
namespace {

using namespace std::literals;

struct Workbook {
  MemoryFiles files;
  XlsSpreadsheet application{files};
  std::unique_ptr<WorksheetWriter> sheet = application.add();

  std::unique_ptr<WorksheetReader> reread() {
    sheet->saveAs("out.xls");
    return application.open("out.xls", ColumnSet().set());
  }

  Texts records(Record wanted) {
    sheet->saveAs("out.xls");
    return recordsOf(files.contents["out.xls"], wanted);
  }
};

TEST_CASE("texts stay as they are") {
  const std::string longest(32767, 'x');
  const Texts texts{
      "Salesman", "=1+1", "+91 20", "-5", "@x",   "007",   "1-2",    " blank ",
      "Größe",    "राम",  "€",      "😀😀", "TRUE", longest, "a\r\nb", "\xC2\x80\xC3\xBF",
      "n\0l"s};
  Workbook workbook;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    workbook.sheet->setText(static_cast<int>(i) + 1, 3, texts[i]);
  }
  const auto sheet = workbook.reread();
  for (std::size_t i = 0; i < texts.size(); ++i) {
    CAPTURE(i);
    CHECK(sheet->text(static_cast<int>(i) + 1, 3) == texts[i]);
  }
  CHECK(sheet->rowCount() == static_cast<int>(texts.size()));
}

TEST_CASE("texts of every length at the ends of records") {
  // Each begins at another distance from the end of its record; some are wide, some are not.
  Workbook workbook;
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < 120; ++i) {
    texts.push_back(std::to_string(i) + std::string(8224 - 60 + i, 'x'));
    if (i % 3 == 1) texts.back() += "ä";
    if (i % 3 == 2)
      texts.back().replace(i % 7 + 4, 4100,
                           "\xF0\x9F\x98\x80"
                           "हह");
    workbook.sheet->setText(static_cast<int>(i) + 1, 1, texts[i]);
  }
  const auto sheet = workbook.reread();
  for (std::size_t i = 0; i < texts.size(); ++i) {
    CAPTURE(i);
    CHECK(sheet->text(static_cast<int>(i) + 1, 1) == texts[i]);
  }
  for (const Record type : {Record::SharedStrings, Record::Continue}) {
    for (const std::string& payload : workbook.records(type)) CHECK(payload.size() <= 8224);
  }
}

TEST_CASE("cells in any order; later ones and blanks") {
  Workbook workbook;
  const std::tuple<int, int, std::string> cells[] = {
      {65536, 256, "end"}, {1, 250, "first"}, {1, 1, "A"}, {9, 251, "second"}, {2, 1, "gone"},
      {1, 250, "again"},   {2, 1, ""},        {3, 1, "C"}, {2, 2, "B"}};
  for (const auto& [row, column, text] : cells) workbook.sheet->setText(row, column, text);
  const auto sheet = workbook.reread();
  CHECK(sheet->rowCount() == 65536);
  CHECK(sheet->text(65536, 256) == "end");
  CHECK(sheet->text(1, 250) == "again");
  CHECK(sheet->text(9, 251) == "second");
  CHECK(sheet->text(2, 1).empty());
  CHECK(sheet->text(2, 2) == "B");
  CHECK(workbook.records(Record::LabelSst).size() == 6);
}

TEST_CASE("streams of any length") {
  // To both sides of the length from which on no mini sectors are used, and so long that the table
  // of sectors does not fit into the header.
  std::size_t mini = 0;
  for (std::size_t length = 3320; length < 3400; ++length) {
    CAPTURE(length);
    Workbook file;
    file.sheet->setText(1, 1, std::string(length, 'm'));
    CHECK(file.reread()->text(1, 1) == std::string(length, 'm'));
    if (file.files.contents["out.xls"][headerFirstMiniTable] != '\xFE') ++mini;
  }
  CHECK(mini == 42);  // 4,095 bytes and less
  Workbook workbook;
  CHECK(workbook.reread()->rowCount() == 0);
  for (int row = 1; row <= 500; ++row) {
    workbook.sheet->setText(row, 1, std::to_string(row) + std::string(32000, 'l'));
  }
  const auto sheet = workbook.reread();
  CHECK(workbook.files.contents["out.xls"].size() > 109 * 128 * 512);
  CHECK(sheet->text(1, 1).starts_with("1l"));
  CHECK(sheet->text(500, 1).starts_with("500l"));
}

TEST_CASE("fonts, columns and lists") {
  Workbook workbook;
  workbook.sheet->setText(1, 1, "Salesman");
  workbook.sheet->setBold({1, 1, 1, 2});
  workbook.sheet->setText(2, 1, "plain");
  workbook.sheet->setText(2, 2, "iiiiiiiiii");
  workbook.sheet->setText(3, 2, "WWWWWWWWWW");
  workbook.sheet->setColumnWidth(6, 30);
  workbook.sheet->hideColumn(250);
  workbook.sheet->autoFit(1, 5);
  workbook.sheet->addListValidation({2, 6, 1000, 6}, {2, 250, 1, 250});
  // row, column, format, text: bold texts have format 17, others 16
  CHECK(workbook.records(Record::LabelSst).at(0) == "\0\0\0\0\x11\0\0\0\0\0"s);
  CHECK(workbook.records(Record::Blank) == Texts{"\0\0\1\0\x11\0"s});
  CHECK(workbook.records(Record::LabelSst).at(1) == "\1\0\0\0\x10\0\1\0\0\0"s);
  CHECK(workbook.records(Record::ExtendedFormat).at(17).starts_with("\5\0\x31\0"s));
  CHECK(workbook.records(Record::Font).at(4).substr(6, 2) == "\xBC\2");  // 700, the fifth
  const Texts columns = workbook.records(Record::ColumnInfo);
  REQUIRE(columns.size() == 4);  // A, B, F and IP
  const auto widthOf = [&](std::size_t i) { return loadNumber<std::uint16_t>(&columns[i][4]); };
  CHECK(widthOf(0) / 256 == 9);   // eight bold letters and the margin
  CHECK(widthOf(1) / 256 == 17);  // ten of the widest ones
  CHECK(columns[2] == "\5\0\5\0\xB6\x1E\x0F\0\0\0\0\0"s);
  CHECK(columns[3].substr(8, 2) == "\1\0"s);
  CHECK(workbook.records(Record::ValidationList).at(0).substr(10) == "\xFF\xFF\xFF\xFF\1\0\0\0"s);
  // A list that may be left blank, with a drop-down and a stop alert; no texts; IP1:IP2; F2:F1000.
  CHECK(workbook.records(Record::Validation) ==
        Texts{"\3\1\x0C\0\1\0\0\0\1\0\0\0\1\0\0\0\1\0\0\0\x09\0\0\0\x25\0\0\1\0\xF9\0\xF9\0"
              "\0\0\0\0\1\0\1\0\xE7\3\5\0\5\0"s});
}

TEST_CASE("what a sheet does not take") {
  Workbook workbook;
  WorksheetWriter& sheet = *workbook.sheet;
  const std::pair<int, int> places[] = {{0, 1}, {1, 0}, {65537, 1}, {1, 257}};
  for (const auto& place : places) {
    const auto row = place.first;
    const auto column = place.second;
    CAPTURE(row);
    CAPTURE(column);
    CHECK(errorOf([&] { sheet.setText(row, column, "x"); }) == 9);
    CHECK(errorOf([&] { sheet.setBold({1, 1, row, column}); }) == 9);
  }
  CHECK(errorOf([&] { sheet.hideColumn(257); }) == 9);
  CHECK(errorOf([&] { sheet.setColumnWidth(1, 256); }) == 5);
  CHECK(errorOf([&] { sheet.setText(1, 1, std::string(32768, 'x')); }) == 5);
  CHECK(errorOf([&] { sheet.addListValidation({1, 1, 1, 1}, {2, 250, 9, 251}); }) == 5);
  CHECK(errorOf([&] { sheet.addListValidation({1, 1, 1, 1}, {1, 1, 65537, 1}); }) == 9);
  CHECK(workbook.reread()->rowCount() == 0);
}

TEST_CASE("a failure leaves the file that was there") {
  using Call = MemoryFiles::Call;
  for (const Call call : {Call::OpenReplacement, Call::Write, Call::Close}) {
    CAPTURE(static_cast<int>(call));
    Workbook workbook;
    workbook.files.contents["out.xls"] = "before";
    workbook.files.failing = call;
    CHECK(errorOf([&] { workbook.sheet->saveAs("out.xls"); }) == 57);
    CHECK(workbook.files.contents["out.xls"] == "before");
    CHECK(workbook.files.open == 0);
  }
}

}  // namespace
}  // namespace velk::xls
