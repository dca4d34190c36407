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
  const bool isFile = CompoundFile::recognises(bytes);
  const SheetContents sheet = isFile ? readWorkbook(workbookStream(bytes)) : readWorkbook(bytes);
  const auto& cells = sheet.cells.cells();
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0 &&
        cells[i - 1].row * 256 + cells[i - 1].column >= cells[i].row * 256 + cells[i].column)
      std::abort();
    if (sheet.cells.find(cells[i].row, cells[i].column) != &cells[i]) std::abort();
    static_cast<void>(sheet.text(cells[i].row, cells[i].column));
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
