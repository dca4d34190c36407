// All salesmen to a workbook, with pick lists of the DS types and handheld values that they may be
// given, ready to be edited and imported again.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "mapping/import_screen.h"

namespace velk {

class SalesmanExport {
 public:
  explicit SalesmanExport(ImportScreen& screen) : screen_(screen) {}
  SalesmanExport(const SalesmanExport&) = delete;
  SalesmanExport& operator=(const SalesmanExport&) = delete;

  /// Asks for a file and writes all salesmen to it.
  void cmdExport_Click();
  /// False: the workbook was not written; the log says why.
  bool ExportToExcel(std::string_view fileName);
  /// Whether the file can't be opened exclusively. Where there is none, an empty one is made.
  bool IsFileInUse(std::string_view fileName);

 private:
  std::optional<std::string> chooseFile();
  void refuseFileInUse();
  void writeWorkbook(std::string_view fileName);
  void removeMadeFile(std::string_view fileName);

  ImportScreen& screen_;
  bool madeFile_ = false;  // by the in-use test
};

}  // namespace velk
