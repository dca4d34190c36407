// All salesmen to a workbook, with pick lists of the DS types and handheld values that they may be
// given, ready to be edited and imported again.
#include "base/errors.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "masters/salesman_workbook.h"

namespace velk {

namespace {

constexpr std::string_view exportTitle = "Salesman Export";

constexpr std::string_view dsTypesQuery =
    "select DSTypeValue from DSType_Master where DSTypeCtlPos=1 and OCGtype = ( select flag from "
    "tbl_velk_configabstract where screencode = 'OCGDS')";
// Of all operational category groups, intended.
constexpr std::string_view handheldsQuery =
    "select DSTypeValue from DSType_Master where DSTypeCtlPos=2";
constexpr std::string_view salesmenQuery =
    "select S.Salesman_name,Address,ResidentialNUmber,MobileNumber,(select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID  and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=1),isnull((select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID  and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=2),'No') from Salesman S order by "
    "Salesman_name";

/// Runs `take` for each record of a query with the sheet's row for it, from row 2.
template <class Take>
void forEachRow(Connection& connection, std::string_view query, Take&& take) {
  const auto records = connection.Execute(query);
  for (int row = 2; !records->isEOF(); records->MoveNext()) take(row++, *records);
  records->Close();
}

std::vector<std::string> valuesOf(Connection& connection, std::string_view query) {
  std::vector<std::string> values;
  forEachRow(connection, query,
             [&](int, const Recordset& record) { values.push_back(toText(record.field(0))); });
  return values;
}

void writeSalesman(WorksheetWriter& sheet, int row, const Recordset& record) {
  constexpr std::size_t dsType = 4;
  constexpr std::size_t handheld = 5;
  for (std::size_t field = 0; field < dsType; ++field) {
    sheet.setText(row, static_cast<int>(field) + 1, toText(record.field(field)));
  }
  // The type that he has, and once more to be edited.
  for (const int column : {salesmanColumn::ExistingDSType, salesmanColumn::DSType}) {
    sheet.setText(row, column, toText(record.field(dsType)));
  }
  sheet.setText(row, salesmanColumn::HandHeldDS, toText(record.field(handheld)));
}

}  // namespace

void Velk_frmBankBranch_OpnImp::cmdExport_Click() {
  trapRoutine("cmdExport_Click", [this] {
    const std::optional<std::string> fileName = chooseExportFile();
    if (!fileName) return;
    if (IsFileInUse(*fileName)) {
      desktop().messageBox(
          "File is already open or accessed by some other process. Please close that Excel File.",
          styleInformation, exportTitle);
    } else if (!ExportToExcel(*fileName)) {
      // The import's caption on a failed export, intended.
      desktop().messageBox("Unable to export the Salesman information", styleCritical,
                           "Salesman Import");
    }
  });
}

/// Nothing when the user cancelled.
std::optional<std::string> Velk_frmBankBranch_OpnImp::chooseExportFile() {
  setUpDialog();
  CommonDialog1.set(Property::DialogTitle, std::string(exportTitle));
  CommonDialog1.set(Property::FileName, std::string());
  try {
    CommonDialog1.ShowSave();
  } catch (const RuntimeError& error) {
    if (!error.is(ErrorNumber::CancelSelected)) throw;
  }
  const std::string& chosen = CommonDialog1.text(Property::FileName);
  if (chosen.empty()) return std::nullopt;
  return chosen;
}

bool Velk_frmBankBranch_OpnImp::IsFileInUse(std::string_view fileName) {
  madeExportFile_ = false;
  try {
    madeExportFile_ = module().platform().files.openExclusively(fileName);
    return false;
  } catch (const RuntimeError&) {
    return true;
  }
}

bool Velk_frmBankBranch_OpnImp::ExportToExcel(std::string_view fileName) {
  const WaitCursor wait(desktop());
  return trapRoutine("ExportToExcel", [&] {
    try {
      writeWorkbook(fileName);
    } catch (...) {
      removeMadeFile(fileName);
      throw;
    }
    desktop().openDocument(fileName);
  });
}

void Velk_frmBankBranch_OpnImp::writeWorkbook(std::string_view fileName) {
  const auto spreadsheet = module().platform().createSpreadsheet();
  const auto sheet = spreadsheet->add();
  writeSalesmanCaptions(*sheet);
  writePickList(*sheet, dsTypeList, valuesOf(connection(), dsTypesQuery));
  writePickList(*sheet, handheldList, valuesOf(connection(), handheldsQuery));
  forEachRow(connection(), salesmenQuery,
             [&](int row, const Recordset& record) { writeSalesman(*sheet, row, record); });
  sheet->autoFit(salesmanColumn::Name, salesmanColumn::ExistingDSType);
  sheet->saveAs(fileName);
  madeExportFile_ = false;
}

/// The empty file that the in-use test left, unless somebody has filled it since.
void Velk_frmBankBranch_OpnImp::removeMadeFile(std::string_view fileName) {
  if (!std::exchange(madeExportFile_, false)) return;
  try {
    FileSystem& files = module().platform().files;
    if (files.openInput(fileName)->length() == 0) files.remove(fileName);
  } catch (const RuntimeError&) {
    // What the export failed of counts.
  }
}

}  // namespace velk
