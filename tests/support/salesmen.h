// Salesmen's workbooks, and the master screen that imports them.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "tests/support/test_world.h"

namespace velk {

struct SalesmanScreen {
  TestWorld world;
  std::shared_ptr<Velk_frmBankBranch_OpnImp> screen;

  /// The DS types' caption is right. "Retail" is active, "Old" is not, "Van" is no default value,
  /// and all others are unknown.
  SalesmanScreen();
  /// Views a workbook of these rows, "|" between the cells; the first row are the captions.
  void view(const Texts& rows);
  EventResult import() { return screen->cmdImport.userClick(); }
  EventResult exportTo(std::string_view path);
};

inline const std::string salesmanTitles =
    "Salesman|Address|ResNumber|MobNumber|Existing DSType|DSType|HandHeld DS";

/// The bytes of an .xls file with these rows.
std::string workbook(const Texts& rows);
/// The sheet of an .xls file, as rows of seven cells with "|" between.
Texts sheetRows(const std::string& path);

}  // namespace velk
