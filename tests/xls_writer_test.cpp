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

}  // namespace
}  // namespace velk::xls
