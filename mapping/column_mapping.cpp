// Mapping file columns to fields, by their names and by clicks on the headers of both lists, and
// unmapping them.
#include <utility>

#include "base/errors.h"
#include "base/text.h"
#include "mapping/import_screen.h"

namespace velk {

void ImportScreen::writeNotYet(std::size_t field) {
  const std::string_view suffix = field == 0 ? std::string_view() : rules_.furtherCellSuffix;
  mappingList.setCell(mappingRow, field, notYet_ + std::string(suffix));
}

// Whether the first cell shows the caption differs between screens and steps: users of the opening
// screens see it there after Clear only.
void ImportScreen::rebuildMappingList(bool notYetInFirstCell, std::size_t dataRows) {
  mappingList.clearRows();
  mappingList.addRows(1 + dataRows);
  for (std::size_t field = notYetInFirstCell ? 0 : 1; field < mappingList.columnCount(); ++field) {
    writeNotYet(field);
  }
}

// The list shares the preview's column: mapping a file of any size copies no text.
void ImportScreen::mapColumn(std::size_t fileColumn, std::size_t field) {
  auto cells = lv.columnCells(fileColumn);
  const std::size_t rowsNeeded = lv.rowCount() + 1;
  if (mappingList.rowCount() < rowsNeeded) mappingList.addRows(rowsNeeded - mappingList.rowCount());
  mappingList.setColumn(field, firstDataRow, std::move(cells));
  mappingList.setCell(mappingRow, field, lv.title(fileColumn), true);
}

void ImportScreen::mapIdenticalNames() {
  run_.trapWithLine("Error in Mapping Identical Fields", [this] {
    rebuildMappingList(rules_.firstCell.afterAutomaticMapping,
                       static_cast<std::size_t>(recordCount_));
    for (std::size_t column = 0; column < lv.columnCount(); ++column) mapIfNamed(column);
  });
}

// On the opening screens the host may translate a title, so that files in the user's language map
// by themselves.
std::string ImportScreen::nameOf(std::size_t fileColumn) const {
  const std::string_view title = trim(lv.title(fileColumn));
  return lowerAscii(
      rules_.translatesTitles ? module_.hostService().captionText("Vorel", "Label", title) : title);
}

// Every field of that name is mapped, and a later file column takes the place of an earlier one: of
// duplicate titles the last wins.
void ImportScreen::mapIfNamed(std::size_t fileColumn) {
  const std::string name = nameOf(fileColumn);
  const bool lacksFirstValue = lv.rowCount() > 0 && lv.cell(1, fileColumn).empty();
  for (std::size_t field = 0; field < fields_.size(); ++field) {
    const TargetField& f = fields_[field];
    if (f.automaticName.empty() || name != f.automaticName) continue;
    if (f.needsFirstValue && lacksFirstValue) continue;
    mapColumn(fileColumn, field);
  }
}

void ImportScreen::select(std::optional<std::size_t> fileColumn) {
  selectedColumn_ = fileColumn;
  lv.chooseColumn(fileColumn);
  tellNextStep();
}

void ImportScreen::tellNextStep() {
  constexpr struct {
    std::string_view preview, mapping;
  } viewFirst{"Browse for a file and press View.", "Browse for a file and press View."},
      choose{"Click the title of a column, then the title of its field in the list below.",
             "To map a field, first click the title of a column in the list above. To unmap a "
             "field, right-click it."},
      map{"Now click the title of the field in the list below.",
          "Click the title of the field that the chosen column is for."};
  const auto& step = lv.columnCount() == 0 ? viewFirst : lv.chosenColumn() ? map : choose;
  lv.set(Property::ToolTipText, std::string(step.preview));
  mappingList.set(Property::ToolTipText, std::string(step.mapping));
}

void ImportScreen::lv_ColumnClick(std::size_t column) {
  trapRoutine("lv_ColumnClick", [&] {
    lv.title(column);  // a header that does not exist selects nothing
    select(column);
  });
}

void ImportScreen::mappingList_ColumnClick(std::size_t column) {
  run_.trapWithLine("Error in Mapping the Field", [&] { mapSelectedColumn(column); });
}

// One click on a file column serves one field: the next field needs another click.
void ImportScreen::mapSelectedColumn(std::size_t clicked) {
  if (fileRecords_) storeRecordCount(*fileRecords_);
  if (!selectedColumn_) {
    return refuseMapping(Reason::NoColumnChosen, clicked, rules_.selectFirst);
  }
  const std::size_t column = *selectedColumn_;
  select(std::nullopt);
  const std::size_t field = fieldTitled(mappingList.title(clicked));
  if (fields_[field].needsValues && lv.hasEmptyCell(column)) {
    return refuseMapping(Reason::EmptyValues, field, rules_.hasEmptyValue);
  }
  mapColumn(column, field);
}

void ImportScreen::refuseMapping(Reason reason, std::size_t field, std::string_view message) {
  module_.hostService().messageBox(message, styleOk);
  run_.refuse({reason, field, {}}, message);
}

std::size_t ImportScreen::fieldTitled(std::string_view title) const {
  for (std::size_t field = 0; field < mappingList.columnCount(); ++field) {
    if (trim(mappingList.title(field)) == trim(title)) return field;
  }
  throw RuntimeError(ErrorNumber::IndexOutOfBounds);
}

void ImportScreen::CmdClear_Click() {
  trapRoutine("CmdClear_Click", [this] {
    rebuildMappingList(true, 0);
    mappingList.addRows(lastDataRow() - 1);
  });
}

// Positions are added up in 64 bits: a list can be scrolled as far as an int goes.
std::optional<std::size_t> ImportScreen::GetColumnUnderMouse(const ListView& list, int x) {
  const long long position = static_cast<long long>(x) + list.number(Property::ScrollLeft);
  long long left = 0;
  for (std::size_t column = 0; column < list.columnCount(); ++column) {
    const long long right = left + list.width(column);
    if (position >= left && position < right) return column;
    left = right;
  }
  return std::nullopt;
}

// The column is kept for the popup's Clear, which comes as an event of its own.
void ImportScreen::mappingList_MouseUp(MouseButton button, int x) {
  trapRoutine(mappingList.name() + "_MouseUp", [&] {
    if (button != MouseButton::Right) return;
    targetColumn_ = GetColumnUnderMouse(mappingList, x);
    if (targetColumn_ && mappingList.rowCount() > 0) test.popup();
  });
}

void ImportScreen::subclr_Click() {
  trapRoutine("subclr_Click", [this] {
    if (!targetColumn_) return;
    mappingList.setColumn(*targetColumn_, firstDataRow, nullptr);
    writeNotYet(*targetColumn_);
  });
}

}  // namespace velk
