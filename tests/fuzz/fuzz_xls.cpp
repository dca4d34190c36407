// The .xls reader on any bytes: no crash, no unbounded memory or time, and no error but those of a
// file that is no workbook. Bytes that are no compound file are taken for the stream within one.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/errors.h"
#include "platform/spreadsheet/xls/compound_file.h"
#include "platform/spreadsheet/xls/workbook_reader.h"
#include "platform/spreadsheet/xls/xls_file.h"

namespace {

void read(std::string_view bytes) {
  using namespace velk::xls;
  const velk::ColumnSet all = velk::ColumnSet().set();
  const bool isFile = CompoundFile::recognises(bytes);
  const SheetContents sheet =
      isFile ? readWorkbook(workbookStream(bytes).view(), all) : readWorkbook(bytes, all);
  for (const auto& row : sheet.cells.rows()) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0 && row[i - 1].column >= row[i].column) std::abort();
      if (sheet.cells.find(row[i].row, row[i].column) != &row[i]) std::abort();
      static_cast<void>(sheet.text(row[i].row, row[i].column));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    read({reinterpret_cast<const char*>(data), size});
  } catch (const velk::RuntimeError& error) {
    if (!error.is(velk::ErrorNumber::InvalidFileFormat)) std::abort();
  }
  return 0;
}
