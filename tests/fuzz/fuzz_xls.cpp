// The .xls reader on any bytes: no crash, no unbounded memory or time, and no error but those of a
// file that is no workbook. Bytes that are no compound file are taken for the stream within one,
// too.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/errors.h"
#include "platform/spreadsheet/xls/compound_file.h"
#include "platform/spreadsheet/xls/workbook_reader.h"
#include "platform/spreadsheet/xls/xls_file.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"

namespace {

void read(std::string_view stream) {
  using namespace velk::xls;
  const SheetContents sheet = readWorkbook(stream, velk::ColumnSet().set());
  for (const auto& row : sheet.cells.rows()) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0 && row[i - 1].column >= row[i].column) std::abort();
      if (sheet.cells.find(row[i].row, row[i].column) != &row[i]) std::abort();
      static_cast<void>(sheet.text(row[i].row, row[i].column));
      static_cast<void>(sheet.nature(row[i].row, row[i].column));
    }
  }
}

template <class Read>
void onlyRefused(Read read) {
  try {
    read();
  } catch (const velk::RuntimeError& error) {
    if (!error.is(velk::ErrorNumber::InvalidFileFormat)) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  onlyRefused([&] { velk::readXls(bytes, velk::ColumnSet().set(0)); });
  const bool isFile = velk::xls::CompoundFile::recognises(bytes);
  onlyRefused([&] {
    if (isFile) return read(velk::xls::workbookStream(bytes).view());
    read(bytes);
  });
  return 0;
}
