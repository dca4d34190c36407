// Salesmen from a workbook: each record is checked against the DS type rules, then writes the
// salesman and his DS types.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "mapping/file_table.h"
#include "mapping/import_screen.h"
#include "masters/ds_type_rules.h"

namespace velk {

/// How a HandHeld DS value is saved: "YES" and "NO" as they are, everything else as "No". Letter
/// case counts.
std::string_view savedHandheld(std::string_view value);

class SalesmanImport {
 public:
  SalesmanImport(ImportScreen& screen, DsTypeRules& dsTypes)
      : screen_(screen), module_(screen.module()), dsTypes_(dsTypes) {}
  SalesmanImport(const SalesmanImport&) = delete;
  SalesmanImport& operator=(const SalesmanImport&) = delete;

  /// Shows a workbook's rows in the preview. False: there is nothing to import, and the user knows
  /// why. `remarks` are what the preview cannot show.
  bool ImportExcelData(std::string_view fileName, std::string& remarks);
  void tellRemarks(std::string_view remarks);
  /// Imports the salesmen of the mapping list. True when the run reached its end.
  bool ImportSalesmanMaster();
  /// Saves one salesman and his types. Errors are logged.
  void ImportSalesman(const std::string& name, const std::string& address,
                      const std::string& residentialNumber, const std::string& mobileNumber,
                      const std::string& extra, const std::string& dsType,
                      const std::string& handheld);

 private:
  std::optional<FileTable> readWorkbook(std::string_view fileName, std::string& remarks);
  bool refuseWorkbook(Reason reason, std::string_view message);
  void importAll(bool& completed);
  bool postSalesman(std::size_t row);
  std::optional<Finding> refusal(std::string_view salesman, const std::string& dsType,
                                 std::string_view cell);

  ImportScreen& screen_;
  Velk_ModOpnImp& module_;
  DsTypeRules& dsTypes_;
  std::array<std::string, 2> captions_;  // of the run's DS type and handheld columns
};

}  // namespace velk
