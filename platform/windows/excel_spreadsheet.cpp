#include "platform/windows/excel_spreadsheet.h"

#include "platform/windows/excel_sheets.h"

namespace velk {

namespace {

class ExcelSpreadsheet final : public Spreadsheet {
 public:
  explicit ExcelSpreadsheet(ComPtr<IDispatch> application) : application_(std::move(application)) {
    application_.askNothing();
  }

  std::unique_ptr<WorksheetReader> open(std::string_view path,
                                        const ColumnSet& /*wanted*/) override {
    WindowsFileSystem().openInput(path);  // for its errors: the application has one number for all
    return excelSheetReader(application_.openReadOnly(path));
  }

  std::unique_ptr<WorksheetWriter> add() override {
    return excelSheetWriter(application_, ExcelWorkbook(application_.workbooks().object("Add")));
  }

 private:
  ExcelApplication application_;
};

}  // namespace

std::unique_ptr<Spreadsheet> createExcelSpreadsheet() {
  auto application = startExcel();
  // Null is no failure: the caller then reads and writes .xls files without the application.
  if (!application) return nullptr;
  return std::make_unique<ExcelSpreadsheet>(std::move(application));
}

}  // namespace velk
