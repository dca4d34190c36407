#include "platform/spreadsheet/xls/xls_spreadsheet.h"

#include <cstdint>

#include "base/errors.h"
#include "platform/spreadsheet/sheet_cells.h"
#include "platform/spreadsheet/xls/workbook_reader.h"
#include "platform/spreadsheet/xls/xls_file.h"
#include "platform/spreadsheet/xls/xls_sheet_writer.h"

namespace velk {

namespace {

constexpr std::uint64_t maxLength = 1U << 30U;  // offsets within texts are 32 bits

class XlsSheetReader final : public WorksheetReader {
 public:
  explicit XlsSheetReader(xls::SheetContents contents) : contents_(std::move(contents)) {}

  int rowCount() const override { return static_cast<int>(contents_.cells.rows().size()); }

  std::string text(int row, int column) const override {
    checkCell(row, column);
    return contents_.text(static_cast<std::size_t>(row) - 1, static_cast<std::size_t>(column) - 1);
  }
  CellNature nature(int row, int column) const override {
    checkCell(row, column);
    return contents_.nature(static_cast<std::size_t>(row) - 1,
                            static_cast<std::size_t>(column) - 1);
  }
  std::string hiddenName() const override { return contents_.hiddenName; }

 private:
  xls::SheetContents contents_;
};

std::string bytesOf(InputFile& file) {
  if (file.length() >= maxLength) throw RuntimeError(ErrorNumber::OutOfMemory);
  std::string bytes(static_cast<std::size_t>(file.length()), '\0');
  bytes.resize(file.read(bytes.data(), bytes.size()));
  return bytes;
}

}  // namespace

std::unique_ptr<WorksheetReader> XlsSpreadsheet::open(std::string_view path,
                                                      const ColumnSet& wanted) {
  const auto file = files_.openInput(path);
  return refusingWithoutMemory([&] { return readXls(bytesOf(*file), wanted); });
}

std::unique_ptr<WorksheetWriter> XlsSpreadsheet::add() {
  return xls::newXlsSheet(files_);
}

std::unique_ptr<WorksheetReader> readXls(std::string_view file, const ColumnSet& wanted) {
  const xls::StreamBytes stream = xls::workbookStream(file);
  return std::make_unique<XlsSheetReader>(xls::readWorkbook(stream.view(), wanted));
}

void readXlsSheets(std::string_view file, SheetSink& sink) {
  xls::readWorkbook(xls::workbookStream(file).view(), sink);
}

}  // namespace velk
