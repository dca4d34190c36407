#include "masters/salesman_import.h"

#include <algorithm>

#include "base/text.h"
#include "mapping/text_table.h"
#include "masters/salesman_workbook.h"
#include "ui/work.h"

namespace velk {

namespace {

constexpr std::string_view importTitle = "Import Salesman";

std::string_view captionOf(int column) {
  return salesmanCaptions.at(static_cast<std::size_t>(column) - 1);
}

std::string trimmedCell(const WorksheetReader& sheet, int row, int column) {
  return std::string(trim(sheet.text(row, column)));
}

bool hasSalesmanCaptions(const WorksheetReader& sheet) {
  int column = salesmanColumn::Name;
  return std::ranges::all_of(salesmanCaptions, [&](std::string_view caption) {
    return upperAscii(trimmedCell(sheet, 1, column++)) == upperAscii(caption);
  });
}

// The columns after Existing DSType do not count: a row that has only these ends the data.
bool endsData(const WorksheetReader& sheet, int row) {
  for (int column = salesmanColumn::Name; column <= salesmanColumn::ExistingDSType; ++column) {
    if (!trimmedCell(sheet, row, column).empty()) return false;
  }
  return true;
}

void closeIfOpen(const std::shared_ptr<Recordset>& reply) {
  if (reply != nullptr && reply->State() == stateOpen) reply->Close();
}

/// "C3".
std::string cellName(int row, int column) {
  return static_cast<char>('A' + column - 1) + std::to_string(row);
}

/// What the preview cannot show of a workbook, but a user has to know.
class Remarks {
 public:
  explicit Remarks(const WorksheetReader& sheet) : sheet_(sheet) {}

  void look(int row, int firstColumn, int lastColumn) {
    for (int column = firstColumn; column <= lastColumn; ++column) {
      if (sheet_.nature(row, column) != CellNature::NoResult) continue;
      if (uncalculated_++ == 0) first_ = cellName(row, column);
    }
  }

  /// Empty when there is nothing to say.
  std::string text() const {
    std::string text;
    if (const std::string name = sheet_.hiddenName(); !name.empty()) {
      text = "The first worksheet, \"" + name + "\", is the one that is read, and it is hidden.";
    }
    if (uncalculated_ == 0) return text;
    if (!text.empty()) text += "\r\n";
    return text + "The workbook does not contain the results of " + std::to_string(uncalculated_) +
           " formula(s), the first in cell " + first_ +
           ": they are read as empty or 0. Open it in a spreadsheet program, save it there, and "
           "press View again.";
  }

 private:
  const WorksheetReader& sheet_;
  std::size_t uncalculated_ = 0;
  std::string first_;
};

std::string logLine(std::string_view salesman, const Finding& why) {
  std::string line(salesman);
  switch (why.reason) {
    case Reason::DsTypeNotDefault:
      return line + " - Salesman(s) DsType Value is Not DefaultValue.";
    case Reason::DsTypeInactive:
      return line + " - Salesman(s) DSType is InActive in the DS Master : " + why.text;
    default:
      return line + " - Salesman(s) DSType not found in the DS Master : " + why.text;
  }
}

}  // namespace

std::string_view savedHandheld(std::string_view value) {
  return value == "YES" || value == "NO" ? value : "No";
}

// The workbook

// Captions are checked before anything is shown: a workbook of another kind leaves the preview
// empty.
bool SalesmanImport::ImportExcelData(std::string_view fileName, std::string& remarks) {
  try {
    const std::optional<FileTable> table = readWorkbook(fileName, remarks);
    if (!table) {
      constexpr std::string_view message = "Unable to import, Invalid Excel file format";
      screen_.desktop().messageBox(message, styleInformation, importTitle);
      return refuseWorkbook(Reason::WrongCaptions, message);
    }
    screen_.showPreview(*table);
    if (table->rows > 0) return true;
    constexpr std::string_view message = "Unable to import, Data not found";
    module_.hostService().messageBox(message, styleOk);
    return refuseWorkbook(Reason::NoRecords, message);
  } catch (const RuntimeError& error) {
    const std::string line = module_.logTrapped(screen_.name() + " : ImportExcelData - ", error);
    screen_.desktop().messageBox("Unable to import, " + error.description(), styleCritical,
                                 importTitle);
    return refuseWorkbook(Reason::UnreadableFile, line);
  }
}

void SalesmanImport::tellRemarks(std::string_view remarks) {
  if (!remarks.empty()) screen_.desktop().messageBox(remarks, styleExclamation, importTitle);
}

bool SalesmanImport::refuseWorkbook(Reason reason, std::string_view message) {
  screen_.run().refuse({reason, std::nullopt, {}}, message);
  return false;
}

/// Empty for a workbook without the salesmen's captions.
std::optional<FileTable> SalesmanImport::readWorkbook(std::string_view fileName,
                                                      std::string& remarks) {
  const auto spreadsheet = module_.platform().createSpreadsheet();
  const auto sheet = spreadsheet->open(fileName, salesmanColumns());
  Remarks found(*sheet);
  if (!hasSalesmanCaptions(*sheet)) return std::nullopt;
  TextTable cells(importedSalesmanColumns.size());
  const Work work(screen_);
  for (int row = 2; row <= maxSheetRows; ++row) {
    // First: formulas without results end the data, too.
    found.look(row, salesmanColumn::Name, salesmanColumn::ExistingDSType);
    if (endsData(*sheet, row)) break;
    found.look(row, salesmanColumn::DSType, salesmanColumn::HandHeldDS);
    for (const int column : importedSalesmanColumns) {
      cells.add(module_.UnquoteField(trimmedCell(*sheet, row, column)));
    }
    screen_.workProgressed(cells.rows());
  }
  remarks = found.text();
  FileTable table;
  for (const int column : importedSalesmanColumns) table.titles.emplace_back(captionOf(column));
  table.rows = cells.rows();
  table.nonEmptyLines = table.rows + 1;
  table.columns = cells.release();
  return table;
}

// The records

// The run counts as completed even when its summary cannot be shown: the salesmen are saved.
bool SalesmanImport::ImportSalesmanMaster() {
  bool completed = false;
  trapErrors([&] { importAll(completed); },
             [this](const RuntimeError& error) {
               module_.logTrapped(screen_.name() + " : ImportSalesmanMaster - ", error);
               screen_.tellStop(error);
             });
  return completed;
}

// The list's own rows are imported, not the record count: the two agree unless a host changed the
// list.
void SalesmanImport::importAll(bool& completed) {
  dsTypes_.reset();
  ImportRun& run = screen_.run();
  const ListView& list = screen_.mappingList;
  const std::size_t last = list.rowCount();
  if (run.firstEmptyCell(salesmanField::Name, last)) {
    constexpr std::string_view message = "Salesman Name  Not Mapped";  // with two blanks
    module_.hostService().messageBox(message, styleInformation);
    return run.refuse({Reason::ValueMissing, salesmanField::Name, {}}, message);
  }
  captions_ = {list.title(salesmanField::DSType), list.title(salesmanField::HandHeldDS)};
  std::int32_t processed = 0;
  std::int32_t unprocessed = 0;
  run.forEachRecord(last,
                    [&](std::size_t row) { ++(postSalesman(row) ? processed : unprocessed); });
  completed = true;
  std::string summary = "Salesman Imported.\r\nProcessed : " + std::to_string(processed) +
                        "\r\nUnProcessed : " + std::to_string(unprocessed) + "\r\n";
  if (unprocessed > 0) summary += " Please check the error log.";
  module_.hostService().messageBox(summary, styleInformation);
  run.end();
}

// False: the record was refused. Values lose their quotes here although the view took them off
// before: a value that was quoted twice loses both pairs.
bool SalesmanImport::postSalesman(std::size_t row) {
  const auto unquoted = [this](std::string_view text) { return screen_.run().unquoted(text); };
  const auto cell = [&](std::size_t field) { return screen_.mappingList.cell(row, field); };
  const std::string salesman = unquoted(cell(salesmanField::Name));
  const std::string dsType = unquoted(cell(salesmanField::DSType));
  if (const auto why = refusal(salesman, dsType, cell(salesmanField::DSType))) {
    screen_.run().found(Verdict::Refused, *why, logLine(salesman, *why));
    return false;
  }
  const std::string handheld = unquoted(cell(salesmanField::HandHeldDS));
  ImportSalesman(salesman, unquoted(trim(cell(salesmanField::Address))),
                 unquoted(trim(cell(salesmanField::ResNumber))),
                 unquoted(trim(cell(salesmanField::MobNumber))), "", unquoted(trim(dsType)),
                 std::string(savedHandheld(trim(handheld))));
  return true;
}

/// Why a salesman can't be given a DS type; empty if he can. `cell` is the type as the list has it,
/// with its quotes, and the look-up takes it so.
std::optional<Finding> SalesmanImport::refusal(std::string_view salesman, const std::string& dsType,
                                               std::string_view cell) {
  const auto because = [&](Reason reason) {
    return Finding{reason, salesmanField::DSType, dsType};
  };
  if (!dsTypes_.CheckForDefaultVal(salesman, dsType)) return because(Reason::DsTypeNotDefault);
  switch (dsTypes_.IsvalidateDSType(cell)) {
    case DsTypeCheck::NotFound:
      return because(Reason::DsTypeUnknown);
    case DsTypeCheck::Inactive:
      return because(Reason::DsTypeInactive);
    case DsTypeCheck::Valid:
      break;
  }
  return std::nullopt;
}

// The types follow a salesman who was not saved, too: the first call's result is not looked at.
void SalesmanImport::ImportSalesman(const std::string& name, const std::string& address,
                                    const std::string& residentialNumber,
                                    const std::string& mobileNumber, const std::string& extra,
                                    const std::string& dsType, const std::string& handheld) {
  ImportRun& run = screen_.run();
  run.trap("ImportSalesman - ", [&] {
    const std::string salesman(trim(name));
    const std::array<ProcedureParameter, 6> master{{{salesman},
                                                    {address},
                                                    {residentialNumber},
                                                    {mobileNumber},
                                                    {0, DataType::Integer},
                                                    {extra}}};
    closeIfOpen(run.post(screen_.connection(), "sp_save_salesman", master));
    const std::array<ProcedureParameter, 5> dsTypes{
        {{salesman}, {captions_[0]}, {dsType}, {captions_[1]}, {handheld}}};
    closeIfOpen(run.post(screen_.connection(), "sp_save_DsType", dsTypes));
  });
}

}  // namespace velk
