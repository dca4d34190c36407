#include "apps/opnimp/records/workbook_records.h"

#include <utility>

#include "apps/opnimp/sheets/read_worksheet.h"
#include "base/text.h"
#include "platform/spreadsheet/sheet_cells.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"

namespace velk {

namespace {

std::string quotedCell(const std::string& text) {
  return text.empty() ? "nothing" : "\"" + text + "\"";
}

}  // namespace

WorkbookRecords::WorkbookRecords(std::string bytes, const std::string& sheet)
    : bytes_(std::move(bytes)), isReadForScreens_(!isForScreens(bytes_, sheet)) {
  if (!sheet.empty()) {
    conversion_.assumptions = {
        {std::string(sheetAssumption), sheet, "given with --sheet", "--sheet NAME"}};
  }
  try {
    sheet_ = readWorksheet(bytes_, salesmanColumns(), sheet);
  } catch (const RuntimeError& error) {
    // Not passed on: a file of another format can be read, but is refused.
    damage_ = error;
  }
  count_ = countRecords();
}

const WorksheetReader& WorkbookRecords::sheet() const {
  if (damage_) throw RuntimeError(*damage_);
  return *sheet_;
}

// As the screen does, which looks at columns A to E only: a row with nothing but a DS type is
// blank.
std::size_t WorkbookRecords::countRecords() const {
  if (!hasCaptions()) return 0;
  int row = firstRow;
  while (row <= rowCount() && !isBlank(row, 1, salesmanColumn::ExistingDSType)) ++row;
  return static_cast<std::size_t>(row - firstRow);
}

bool WorkbookRecords::hasCaptions() const {
  return sheet_ != nullptr && captionFaults().empty();
}

std::string WorkbookRecords::text(int row, int column) const {
  return std::string(trim(sheet_->text(row, column)));
}

bool WorkbookRecords::isBlank(int row, int from, int to) const {
  for (int column = from; column <= to; ++column) {
    if (!text(row, column).empty()) return false;
  }
  return true;
}

std::vector<std::string> WorkbookRecords::fields(std::size_t record, std::size_t most) const {
  std::vector<std::string> fields;
  for (const int column : importedSalesmanColumns) {
    if (fields.size() == most) break;
    fields.push_back(withoutQuotes(text(static_cast<int>(rowOf(record)), column)));
  }
  return fields;
}

std::string WorkbookRecords::captionFaults() const {
  std::string faults;
  for (int column = 1; column <= lastColumn; ++column) {
    const std::string_view caption = salesmanCaptions[static_cast<std::size_t>(column) - 1];
    const std::string found = text(1, column);
    if (equalsIgnoringCase(found, caption)) continue;
    faults += (faults.empty() ? "" : ", ") + columnLetters(static_cast<std::size_t>(column)) +
              "1 holds " + quotedCell(found) + " instead of \"" + std::string(caption) + "\"";
  }
  return faults;
}

std::string WorkbookRecords::refusal(const ImportKind& /*kind*/) const {
  // From the whole file to the single row: each check relies on those before it.
  if (damage_) {
    std::string text = damage_->description();
    // It becomes part of a sentence.
    return text.replace(0, 1, lowerAscii(text.substr(0, 1)));
  }
  const std::string hidden = hiddenName();
  const std::string which =
      "the first worksheet" + (hidden.empty() ? "" : ", the hidden \"" + hidden + "\",");
  if (rowCount() == 0) return which + " of the workbook is blank";
  if (std::string faults = captionFaults(); !faults.empty()) {
    return "the captions in row 1 of " + which +
           " are not those of a salesman workbook: " + faults +
           "; `opnimp export salesman` writes a workbook that has them";
  }
  if (count_ > 0) return {};
  return "the workbook has no salesmen: row 2, where the first one must stand, is blank in columns "
         "A to E";
}

std::vector<std::size_t> WorkbookRecords::unreadRows() const {
  std::vector<std::size_t> rows;
  if (!hasCaptions()) return rows;
  for (std::size_t row = rowOf(count_); row <= static_cast<std::size_t>(rowCount()); ++row) {
    // All columns count here: a row with nothing but a DS type ended the reading, and is lost, too.
    if (!isBlank(static_cast<int>(row), 1, lastColumn)) rows.push_back(row);
  }
  return rows;
}

std::vector<std::string> WorkbookRecords::valuesOf(const PickList& list) const {
  std::vector<std::string> values;
  for (int row = 2; row <= rowCount() && !isBlank(row, list.listColumn, list.listColumn); ++row) {
    values.push_back(text(row, list.listColumn));
  }
  return values;
}

void WorkbookRecords::write(FileSystem& files, std::string_view path,
                            std::span<const std::size_t> records) const {
  XlsSpreadsheet spreadsheet(files);
  const auto copy = spreadsheet.add();
  writeSalesmanCaptions(*copy);
  int row = 1;
  for (const std::size_t record : records) {
    ++row;
    for (int column = 1; column <= lastColumn; ++column) {
      // Not text(), which trims: the copy keeps the blanks of the original.
      copy->setText(row, column, sheet_->text(static_cast<int>(rowOf(record)), column));
    }
  }
  copy->autoFit(1, lastColumn);
  for (const PickList& list : {dsTypeList, handheldList}) {
    const std::vector<std::string> values = valuesOf(list);
    if (!values.empty()) writePickList(*copy, list, values);
  }
  copy->saveAs(path);
}

}  // namespace velk
