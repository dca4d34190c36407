// Browse and View: choosing a file and showing it.
#include <algorithm>
#include <vector>

#include "base/errors.h"
#include "mapping/csv_table.h"
#include "mapping/import_screen.h"

namespace velk {

void ImportScreen::CmdBrowse_Click() {
  trapRoutine("CmdBrowse_Click", [this] {
    lv.clearColumns();
    rebuildMappingList(rules_.firstCell.afterBrowse, 0);
    setUpDialog();
    CommonDialog1.set(Property::FileName, TxtFileName.value());
    try {
      CommonDialog1.ShowOpen();
    } catch (const RuntimeError& error) {
      if (error.is(ErrorNumber::CancelSelected)) return;
      throw;
    }
    const std::string& chosen = CommonDialog1.text(Property::FileName);
    if (chosen.empty()) return;
    TxtFileName.setValue(chosen);
    cmdview.setEnabled(true);
  });
}

void ImportScreen::cmdview_Click() {
  const WaitCursor wait(desktop());
  trapRoutine("cmdview_Click", [this] {
    forgetFile();
    rebuildMappingList(rules_.firstCell.afterBrowse, 0);  // of another file
    if (!loadPreview()) return;
    mapIdenticalNames();
    cmdImport.setEnabled(true);
  });
}

void ImportScreen::forgetFile() {
  cmdImport.setEnabled(false);
  lv.clearRows();
  lv.clearColumns();
  nonEmptyLines_.reset();
  recordCount_ = 0;
  selection_ = Selection::None;
}

bool ImportScreen::loadPreview() {
  std::vector<RuntimeError> unquoteFailures;
  const FileTable table =
      readCsvTable(module_.ReadFileText(TxtFileName.value()),
                   [&](const RuntimeError& error) { unquoteFailures.push_back(error); });
  showPreview(table);
  // Only now: a file with too many records may have a million of them.
  for (const RuntimeError& error : unquoteFailures) module_.logTrapped("", error);
  return true;
}

void ImportScreen::showPreview(const FileTable& table) {
  lv.clearRows();
  lv.clearColumns();
  for (const std::string& title : table.titles) lv.addColumn(title);
  lv.addRows(table.rows);
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    lv.setColumn(column, 1, table.columns[column]);
  }
  nonEmptyLines_ = table.nonEmptyLines;
  storeRecordCount(table.nonEmptyLines);
}

// `lines` are those that are not empty; the header line is one of them.
void ImportScreen::storeRecordCount(std::size_t lines) {
  const std::int64_t count = std::max<std::int64_t>(static_cast<std::int64_t>(lines) - 1, 0);
  if (count > rules_.largestRecordCount) throw RuntimeError(ErrorNumber::Overflow);
  recordCount_ = static_cast<std::int32_t>(count);
}

}  // namespace velk
