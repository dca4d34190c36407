#include "platform/windows/excel_application.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "platform/windows/com_errors.h"

namespace velk {

ExcelApplication::ExcelApplication(ComPtr<IDispatch> application)
    : application_(std::move(application), patience_) {}

ExcelApplication::~ExcelApplication() {
  patience_ = {};  // to quit may take the full time, however much was used before
  try {
    application_.call("Quit");
  } catch (const RuntimeError&) {
    // It is gone, or it hangs; nothing more can be done.
  }
  application_ = {};
}

void ExcelApplication::askNothing() const {
  // msoAutomationSecurityForceDisable; the property came with version 10.
  constexpr int macrosDisabled = 3;
  application_.put("DisplayAlerts", false);
  application_.put("EnableEvents", false);
  application_.putIfKnown("AutomationSecurity", macrosDisabled);
}

ExcelWorkbook ExcelApplication::openReadOnly(std::string_view path) const {
  constexpr int updateNoLinks = 0;
  constexpr bool readOnly = true;
  constexpr bool ignoreRecommendation = true;
  constexpr bool notify = false;
  // Where a password is needed, a wrong one is an error; without one the application would ask
  // for it in a window that is not shown.
  constexpr std::string_view noPassword = "?";
  // In the order of Workbooks.Open; what is left out has its default.
  const auto missing = [] { return Variant::missing(); };
  return ExcelWorkbook(workbooks().object("Open", absolutePath(path), updateNoLinks, readOnly,
                                          missing(), noPassword, missing(), ignoreRecommendation,
                                          missing(), missing(), missing(), notify));
}

int ExcelApplication::xlsFormat() const {
  constexpr double firstWithNewFormats = 12;
  // xlExcel8, and xlWorkbookNormal for the versions before it.
  constexpr int xlsOfLater = 56;
  constexpr int xlsOfEarlier = -4143;
  const std::string version = toText(toValue(application_.get("Version").get()));
  return leadingNumber(version) >= firstWithNewFormats ? xlsOfLater : xlsOfEarlier;
}

FileReplacement& ExcelApplication::replace(std::string_view path) {
  // The application knows the format by this ending, too.
  return replacements_.emplace_back(absolutePath(path), ".xls");
}

ComPtr<IDispatch> startExcel() {
  CLSID id{};
  if (FAILED(CLSIDFromProgID(L"Excel.Application", &id))) return nullptr;
  return createIfRegistered<IDispatch>(id);
}

ExcelWorkbook::~ExcelWorkbook() {
  if (!open_) return;
  try {
    close();
  } catch (const RuntimeError&) {
    // It goes with the application.
  }
}

void ExcelWorkbook::close() {
  if (!open_) throw RuntimeError(ErrorNumber::ObjectNotSet);
  constexpr bool save = false;
  // First: the destructor must not try a close again that has failed.
  open_ = false;
  workbook_.call("Close", save);
  workbook_ = {};
}

}  // namespace velk
