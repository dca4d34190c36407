#include "masters/salesman_export.h"

#include <utility>
#include <vector>

#include "base/errors.h"
#include "masters/salesman_workbook.h"
#include "ui/work.h"

namespace velk {

namespace {

constexpr std::string_view exportTitle = "Salesman Export";

constexpr std::string_view dsTypesQuery =
    "select DSTypeValue from DSType_Master where DSTypeCtlPos=1 and OCGtype = ( select flag from "
    "tbl_velk_configabstract where screencode = 'OCGDS')";
// Of all operational category groups: handheld values belong to none.
constexpr std::string_view handheldsQuery =
    "select DSTypeValue from DSType_Master where DSTypeCtlPos=2";
constexpr std::string_view salesmenQuery =
    "select S.Salesman_name,Address,ResidentialNUmber,MobileNumber,(select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID  and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=1),isnull((select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID  and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=2),'No') from Salesman S order by "
    "Salesman_name";

/// Runs `take` for each record of a query with the sheet's row for it, from row 2. Error 9 when
/// there are more of `what` than rows.
template <class Take>
void forEachRow(Connection& connection, std::string_view query, std::string_view what,
                Take&& take) {
  const auto records = connection.Execute(query);
  for (int row = 2; !records->isEOF(); records->MoveNext()) {
    if (row > maxSheetRows) {
      throw RuntimeError(
          ErrorNumber::SubscriptOutOfRange,
          "A worksheet has room for 65,535 " + std::string(what) + ", and the database has more");
    }
    take(row++, *records);
  }
  records->Close();
}

// Read whole before the sheet is written: the list's range needs the number of its last row.
std::vector<std::string> valuesOf(Connection& connection, std::string_view query,
                                  std::string_view what) {
  std::vector<std::string> values;
  forEachRow(connection, query, what,
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

void SalesmanExport::cmdExport_Click() {
  screen_.trapRoutine("cmdExport_Click", [this] {
    const std::optional<std::string> fileName = chooseFile();
    if (!fileName) return;
    if (IsFileInUse(*fileName)) {
      refuseFileInUse();
    } else if (!ExportToExcel(*fileName)) {
      // Users know this failure under the import's caption.
      screen_.desktop().messageBox("Unable to export the Salesman information", styleCritical,
                                   "Salesman Import");
    }
  });
}

void SalesmanExport::refuseFileInUse() {
  constexpr std::string_view message =
      "File is already open or accessed by some other process. Please close that Excel File.";
  screen_.desktop().messageBox(message, styleInformation, exportTitle);
  screen_.run().refuse({Reason::FileInUse, std::nullopt, {}}, message);
}

/// Empty when the user cancelled.
std::optional<std::string> SalesmanExport::chooseFile() {
  CommonDialog& dialog = screen_.CommonDialog1;
  dialog.set(Property::DialogTitle, std::string(exportTitle));
  dialog.set(Property::Filter, std::string(workbookFilter));
  dialog.set(Property::FilterIndex, 1);
  dialog.set(Property::InitDir, screen_.desktop().applicationFolder());
  dialog.set(Property::CancelError, PropertyBag::flagTrue);
  dialog.set(Property::FileName, std::string());
  try {
    dialog.ShowSave();
  } catch (const RuntimeError& error) {
    if (!error.is(ErrorNumber::CancelSelected)) throw;
  }
  const std::string& chosen = dialog.text(Property::FileName);
  if (chosen.empty()) return std::nullopt;
  return chosen;
}

// Opening makes an empty file where there was none, which has to go again if the export fails.
bool SalesmanExport::IsFileInUse(std::string_view fileName) {
  madeFile_ = false;
  try {
    madeFile_ = screen_.module().platform().files.openExclusively(fileName);
    return false;
  } catch (const RuntimeError&) {
    return true;
  }
}

// Whether the desktop opens the file is not asked: it is written by then.
bool SalesmanExport::ExportToExcel(std::string_view fileName) {
  const WaitCursor wait(screen_.desktop());
  return screen_.trapRoutine("ExportToExcel", [&] {
    try {
      writeWorkbook(fileName);
    } catch (...) {
      removeMadeFile(fileName);
      throw;
    }
    screen_.run().observer().exportWritten();
    screen_.desktop().openDocument(fileName);
  });
}

void SalesmanExport::writeWorkbook(std::string_view fileName) {
  const Work work(screen_);
  Connection& connection = screen_.connection();
  const auto spreadsheet = screen_.module().platform().createSpreadsheet();
  const auto sheet = spreadsheet->add();
  writeSalesmanCaptions(*sheet);
  // A telephone number that is filled in later keeps its leading zeros.
  for (const int column : {salesmanColumn::ResNumber, salesmanColumn::MobNumber}) {
    sheet->setTextColumn(column);
  }
  writePickList(*sheet, dsTypeList, valuesOf(connection, dsTypesQuery, "DS types"));
  writePickList(*sheet, handheldList, valuesOf(connection, handheldsQuery, "handheld values"));
  forEachRow(connection, salesmenQuery, "salesmen", [&](int row, const Recordset& record) {
    writeSalesman(*sheet, row, record);
    screen_.workProgressed(static_cast<std::size_t>(row) - 1);  // the first is row 2
  });
  sheet->autoFit(salesmanColumn::Name, salesmanColumn::ExistingDSType);
  sheet->saveAs(fileName);
  madeFile_ = false;
}

// The empty file that the in-use test left, unless somebody has filled it since.
void SalesmanExport::removeMadeFile(std::string_view fileName) {
  if (!std::exchange(madeFile_, false)) return;
  try {
    FileSystem& files = screen_.module().platform().files;
    if (files.openInput(fileName)->length() == 0) files.remove(fileName);
  } catch (const RuntimeError&) {
    // The export's own failure counts.
  }
}

}  // namespace velk
