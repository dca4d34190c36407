// Browse and View: choosing a file and showing it.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "base/numbers.h"
#include "mapping/csv_table.h"
#include "mapping/file_survey.h"
#include "mapping/import_screen.h"
#include "shared/csv_text.h"
#include "ui/work.h"

namespace velk {

// The lists are emptied before the dialog appears, and stay so when the user cancels; the file name
// and the buttons stay as they were.
void ImportScreen::CmdBrowse_Click() {
  trapRoutine("CmdBrowse_Click", [this] {
    lv.clearColumns();
    tellNextStep();
    rebuildMappingList(rules_.firstCell.afterBrowse, 0);
    setUpDialog();
    // The path of a file would be a start folder of its own.
    const bool startsAnywhere = CommonDialog1.text(Property::InitDir).empty();
    CommonDialog1.set(Property::FileName, startsAnywhere ? TxtFileName.value() : "");
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

// What belonged to the file before goes first: a stale click on a header must not map a column of
// another file, and Import stays disabled until this one is shown whole.
void ImportScreen::cmdview_Click() {
  const WaitCursor wait(desktop());
  const Work work(*this);
  trapRoutine("cmdview_Click", [this] {
    forgetFile();
    rebuildMappingList(rules_.firstCell.afterBrowse, 0);
    if (!loadPreview()) return;
    mapIdenticalNames();
    cmdImport.setEnabled(true);
  });
}

void ImportScreen::forgetFile() {
  cmdImport.setEnabled(false);
  lv.clearRows();
  lv.clearColumns();
  fileRecords_.reset();
  recordCount_ = 0;
  select(std::nullopt);
}

bool ImportScreen::loadPreview() {
  std::vector<RuntimeError> unquoteFailures;
  workProgressed(0);
  surveyFirst(surveyIfLong);
  std::string text = module_.ReadFileText(TxtFileName.value());
  workProgressed(0);
  FileTable table;
  try {
    table = readCsvTable(std::move(text),
                         [&](const RuntimeError& error) { unquoteFailures.push_back(error); });
  } catch (const RuntimeError& error) {
    // Most likely it has too many records, and then the user is told their number.
    if (error.is(ErrorNumber::OutOfMemory)) surveyFirst(surveyFile);
    throw;
  }
  workProgressed(table.rows);
  showPreview(table);
  // Only now: a file with too many records may have a million of them.
  for (const RuntimeError& error : unquoteFailures) module_.logTrapped("", error);
  return true;
}

// What goes wrong with the file here is told by the reading of it.
template <class Survey>
void ImportScreen::surveyFirst(Survey survey) {
  std::optional<FileSurvey> found;
  trapErrors([&] { found = survey(module_.platform().files, TxtFileName.value()); },
             [](const RuntimeError&) {});
  if (found) refuseLongFile(*found);
}

void ImportScreen::showPreview(const FileTable& table) {
  lv.clearRows();
  lv.clearColumns();
  for (const std::string& title : table.titles) lv.addColumn(title);
  lv.addRows(table.rows);
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    lv.setColumn(column, 1, table.columns[column]);
  }
  tellNextStep();
  fileRecords_ = countOf(static_cast<std::int64_t>(table.rows),
                         static_cast<std::int64_t>(table.nonEmptyLines));
  if (*fileRecords_ >= rules_.largestRecordCount) refuseTooMany(*fileRecords_);
  storeRecordCount(*fileRecords_);
}

// On the opening screens an empty first line makes the count one too small, and the last record is
// left out: that is how files without titles have always been read there.
std::int64_t ImportScreen::countOf(std::int64_t rows, std::int64_t nonEmptyLines) const {
  return rules_.countsLines ? std::max<std::int64_t>(nonEmptyLines - 1, 0) : rows;
}

// Its rows are not shown: they could be too many to keep.
void ImportScreen::refuseLongFile(const FileSurvey& survey) {
  if (survey.longestLine > maxLineLength) {
    refuseFile({Reason::LongLine, std::nullopt, {}, 0},
               "A line of the file is longer than " + grouped(maxLineLength >> 20) +
                   " MB: it is no list of records. Check how it was saved.");
    throw RuntimeError(ErrorNumber::OutOfMemory);
  }
  const std::int64_t rows = survey.nonEmptyLines - (survey.titlesEmpty ? 0 : 1);
  const std::int64_t count = countOf(rows, survey.nonEmptyLines);
  if (count >= rules_.largestRecordCount) refuseTooMany(count);
}

// The count is stored in 16 bits on some screens, and imports add 1 to it: one record less than
// fits is the most that can be imported.
void ImportScreen::refuseTooMany(std::int64_t count) {
  const std::string text = "The file has " + grouped(static_cast<std::size_t>(count)) +
                           " records; at most " +
                           grouped(static_cast<std::size_t>(rules_.largestRecordCount) - 1) +
                           " can be imported in one go. Split the file.";
  refuseFile({Reason::TooManyRecords, std::nullopt, {}, static_cast<std::size_t>(count)}, text);
  throw RuntimeError(ErrorNumber::Overflow);
}

void ImportScreen::refuseFile(const Finding& why, const std::string& text) {
  module_.hostService().messageBox(text, styleExclamation);
  run_.refuse(why, text);
}

void ImportScreen::storeRecordCount(std::int64_t count) {
  if (count > rules_.largestRecordCount) throw RuntimeError(ErrorNumber::Overflow);
  recordCount_ = static_cast<std::int32_t>(count);
}

}  // namespace velk
