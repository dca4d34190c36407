#include "platform/windows/excel_application.h"

#include "base/errors.h"

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

FileReplacement& ExcelApplication::replace(std::string_view path) {
  // The application knows the format by this ending, too.
  return replacements_.emplace_back(absolutePath(path), ".xls");
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
