#include "platform/windows/excel_spreadsheet.h"

#include "platform/windows/com_errors.h"
#include "platform/windows/excel_sheets.h"

namespace velk {

namespace {

class ExcelSpreadsheet final : public Spreadsheet {
 public:
  explicit ExcelSpreadsheet(ComPtr<IDispatch> application) : application_(std::move(application)) {
    // msoAutomationSecurityForceDisable; the property came with version 10.
    constexpr int macrosDisabled = 3;
    // No one sees the application: a question of its own would wait for ever.
    application_.object().put("DisplayAlerts", false);
    application_.object().put("EnableEvents", false);
    application_.object().putIfKnown("AutomationSecurity", macrosDisabled);
  }

  std::unique_ptr<WorksheetReader> open(std::string_view path,
                                        const ColumnSet& /*wanted*/) override {
    WindowsFileSystem().openInput(path);  // for its errors: the application has one number for all
    return excelSheetReader(ExcelWorkbook(openReadOnly(absolutePath(path))));
  }

  std::unique_ptr<WorksheetWriter> add() override {
    return excelSheetWriter(application_, ExcelWorkbook(workbooks().object("Add")));
  }

 private:
  ExcelObject workbooks() const { return application_.object().object("Workbooks"); }

  ExcelObject openReadOnly(const std::string& path) const {
    constexpr int updateNoLinks = 0;
    constexpr bool readOnly = true;
    constexpr bool ignoreRecommendation = true;
    constexpr bool notify = false;
    // Where a password is needed, a wrong one is an error; without one the application would ask
    // for it in a window that is not shown.
    constexpr std::string_view noPassword = "?";
    // In the order of Workbooks.Open; what is left out has its default.
    const auto missing = [] { return Variant::missing(); };
    return workbooks().object("Open", path, updateNoLinks, readOnly, missing(), noPassword,
                              missing(), ignoreRecommendation, missing(), missing(), missing(),
                              notify);
  }

  ExcelApplication application_;
};

}  // namespace

std::unique_ptr<Spreadsheet> createExcelSpreadsheet() {
  CLSID id{};
  // Null is no failure: the caller then reads and writes .xls files without the application.
  if (FAILED(CLSIDFromProgID(L"Excel.Application", &id))) return nullptr;
  auto application = createIfRegistered<IDispatch>(id);
  if (!application) return nullptr;
  return std::make_unique<ExcelSpreadsheet>(std::move(application));
}

}  // namespace velk
