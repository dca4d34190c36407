// The spreadsheet application while it runs, and a workbook that is open in it.
#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "platform/windows/excel_object.h"
#include "platform/windows/message_filter.h"
#include "platform/windows/windows_files.h"

namespace velk {

/// Closes the workbook at its end, without saving.
class ExcelWorkbook {
 public:
  explicit ExcelWorkbook(ExcelObject workbook) : workbook_(std::move(workbook)) {}
  ExcelWorkbook(ExcelWorkbook&& other) noexcept
      : workbook_(std::move(other.workbook_)), open_(std::exchange(other.open_, false)) {}
  ExcelWorkbook& operator=(ExcelWorkbook&&) = delete;
  ~ExcelWorkbook();

  const ExcelObject& object() const { return workbook_; }
  /// Error 91 when it is closed already.
  void close();
  ExcelObject firstSheet() const { return workbook_.object("Worksheets", 1); }

 private:
  ExcelObject workbook_;
  bool open_ = true;
};

/// Quits the application at its end, whatever happened; workbooks that are open are not saved. All
/// other references to objects of the application have to be gone then, or it would stay.
class ExcelApplication {
 public:
  explicit ExcelApplication(ComPtr<IDispatch> application);
  ~ExcelApplication();
  ExcelApplication(const ExcelApplication&) = delete;
  ExcelApplication& operator=(const ExcelApplication&) = delete;

  const ExcelObject& object() const { return application_; }
  /// No alerts, no macros: nobody sees the application, and a question of its own would wait for
  /// ever.
  void askNothing() const;
  ExcelObject workbooks() const { return application_.object("Workbooks"); }
  /// Without its links being updated, and with no password.
  ExcelWorkbook openReadOnly(std::string_view path) const;
  /// What SaveAs takes for .xls.
  int xlsFormat() const;
  /// A new file for this place. What is left of it goes after the application has let go of it.
  FileReplacement& replace(std::string_view path);

 private:
  std::deque<FileReplacement> replacements_;
  QuietMessageFilter filter_;
  Patience patience_;
  ExcelObject application_;
};

/// Null when none is registered, error 429 when it does not start.
ComPtr<IDispatch> startExcel();

}  // namespace velk
