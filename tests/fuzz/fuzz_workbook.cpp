// The .xls writer: any texts come back from its workbook as they were, by rows ("\n") and columns
// ("|") of the input.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>

#include "base/errors.h"
#include "base/text.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "tests/support/memory_files.h"

using namespace velk;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text =
      CodePage::windows1252().decode({reinterpret_cast<const char*>(data), size});
  MemoryFiles files;
  std::map<std::pair<int, int>, std::string> cells;
  const auto sheet = XlsSpreadsheet(files).add();
  std::pair<int, int> place(1, 1);
  std::string cell;
  for (const char byte : text + "\n") {
    if (byte != '\n' && byte != '|') {
      cell += byte;
      continue;
    }
    try {
      sheet->setText(place.first, place.second, cell);
      cells[place] = cell;
    } catch (const RuntimeError& error) {
      const bool expected =
          error.is(ErrorNumber::SubscriptOutOfRange) || error.is(ErrorNumber::InvalidProcedureCall);
      if (!expected) std::abort();
    }
    cell.clear();
    byte == '|' ? ++place.second : (++place.first, place.second = 1);
  }
  sheet->setBold({1, 1, 1, 3});
  sheet->autoFit(1, 7);
  sheet->setTextColumn(2);
  sheet->addListValidation({2, 1, 9, 1}, {1, 2, 9, 2});
  sheet->saveAs("out.xls");
  const auto again = XlsSpreadsheet(files).open("out.xls", ColumnSet().set());
  for (const auto& [at, written] : cells) {
    if (again->text(at.first, at.second) != written) std::abort();
  }
  return 0;
}
