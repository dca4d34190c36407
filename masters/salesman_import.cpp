// Salesmen from a workbook: each record is checked against the DS type rules, then writes the
// salesman and his DS types.
#include <algorithm>
#include <array>

#include "base/text.h"
#include "mapping/text_table.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "masters/salesman_workbook.h"

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

// The columns behind Existing DSType do not count: a row that has only these ends the data.
bool endsData(const WorksheetReader& sheet, int row) {
  for (int column = salesmanColumn::Name; column <= salesmanColumn::ExistingDSType; ++column) {
    if (!trimmedCell(sheet, row, column).empty()) return false;
  }
  return true;
}

void closeIfOpen(const std::shared_ptr<Recordset>& reply) {
  if (reply != nullptr && reply->State() == stateOpen) reply->Close();
}

}  // namespace

// The workbook

bool Velk_frmBankBranch_OpnImp::ImportExcelData(std::string_view fileName) {
  try {
    const std::optional<FileTable> table = readSalesmen(fileName);
    if (!table) {
      desktop().messageBox("Unable to import, Invalid Excel file format", styleInformation,
                           importTitle);
      return false;
    }
    showPreview(*table);
    if (table->rows > 0) return true;
    module().hostService().messageBox("Unable to import, Data not found", styleOk);
  } catch (const RuntimeError& error) {
    module().logTrapped(name() + " : ImportExcelData - ", error);
    desktop().messageBox("Unable to import, " + error.description(), styleCritical, importTitle);
  }
  return false;
}

/// Nothing for a workbook without the salesmen's captions.
std::optional<FileTable> Velk_frmBankBranch_OpnImp::readSalesmen(std::string_view fileName) {
  const auto spreadsheet = module().platform().createSpreadsheet();
  const auto sheet = spreadsheet->open(fileName);
  if (!hasSalesmanCaptions(*sheet)) return std::nullopt;
  TextTable cells(importedSalesmanColumns.size());
  for (int row = 2; row <= maxSheetRows && !endsData(*sheet, row); ++row) {
    for (const int column : importedSalesmanColumns) {
      cells.add(module().UnquoteField(trimmedCell(*sheet, row, column)));
    }
  }
  FileTable table;
  for (const int column : importedSalesmanColumns) {
    table.titles.emplace_back(captionOf(column));
  }
  table.rows = cells.rows();
  table.nonEmptyLines = table.rows + 1;
  table.columns = cells.release();
  return table;
}

// The records

void Velk_frmBankBranch_OpnImp::ImportSalesmanMaster() {
  importCompleted_ = false;
  NotDefaultList.clear();
  NotDefaultCount = 0;
  NotDefaultFound = false;
  const std::size_t last = lstCust.rowCount();
  if (firstEmptyCell(salesmanField::Name, last)) {
    module().hostService().messageBox("Salesman Name  Not Mapped", styleInformation);
    return;
  }
  dsCaptions_ = {lstCust.title(salesmanField::DSType), lstCust.title(salesmanField::HandHeldDS)};
  std::int32_t processed = 0;
  std::int32_t unprocessed = 0;
  forEachRecord(last, [&](std::size_t row) { ++(postSalesman(row) ? processed : unprocessed); });
  importCompleted_ = true;
  std::string summary = "Salesman Imported.\r\nProcessed : " + std::to_string(processed) +
                        "\r\nUnProcessed : " + std::to_string(unprocessed) + "\r\n";
  if (unprocessed > 0) summary += " Please check the error log.";
  module().hostService().messageBox(summary, styleInformation);
}

/// False: the record was refused.
bool Velk_frmBankBranch_OpnImp::postSalesman(std::size_t row) {
  const auto unquoted = [&](std::string_view text) { return module().UnquoteField(text); };
  const auto cell = [&](std::size_t field) { return lstCust.cell(row, field); };
  const std::string salesman = unquoted(cell(salesmanField::Name));
  const std::string dsType = unquoted(cell(salesmanField::DSType));
  if (const std::string reason = refusal(salesman, dsType, cell(salesmanField::DSType));
      !reason.empty()) {
    module().WriteErrorLog(salesman + reason);
    return false;
  }
  std::string handheld(trim(unquoted(cell(salesmanField::HandHeldDS))));
  if (handheld != "NO" && handheld != "YES") handheld = "No";
  ImportSalesman(salesman, unquoted(trim(cell(salesmanField::Address))),
                 unquoted(trim(cell(salesmanField::ResNumber))),
                 unquoted(trim(cell(salesmanField::MobNumber))), "", unquoted(trim(dsType)),
                 handheld);
  return true;
}

/// Why a salesman can't be given a DS type; empty when he can. `cell` is the type as it stands.
std::string Velk_frmBankBranch_OpnImp::refusal(std::string_view salesman, std::string_view dsType,
                                               std::string_view cell) {
  if (!CheckForDefaultVal(salesman, dsType)) {
    return " - Salesman(s) DsType Value is Not DefaultValue.";
  }
  switch (IsvalidateDSType(cell)) {
    case DsTypeCheck::NotFound:
      return std::string(" - Salesman(s) DSType not found in the DS Master : ").append(dsType);
    case DsTypeCheck::Inactive:
      return std::string(" - Salesman(s) DSType is InActive in the DS Master : ").append(dsType);
    case DsTypeCheck::Valid:
      break;
  }
  return {};
}

void Velk_frmBankBranch_OpnImp::ImportSalesman(const std::string& name, const std::string& address,
                                               const std::string& residentialNumber,
                                               const std::string& mobileNumber,
                                               const std::string& extra, const std::string& dsType,
                                               const std::string& handheld) {
  // Whether the salesman was saved is not looked at, intended: his types always follow.
  module().trap("ImportSalesman - ", [&] {
    const std::string salesman(trim(name));
    const std::array<ProcedureParameter, 6> master{{{salesman},
                                                    {address},
                                                    {residentialNumber},
                                                    {mobileNumber},
                                                    {0, DataType::Integer},
                                                    {extra}}};
    closeIfOpen(module().ExecuteProcedure(connection(), "sp_save_salesman", master));
    const std::array<ProcedureParameter, 5> dsTypes{
        {{salesman}, {dsCaptions_[0]}, {dsType}, {dsCaptions_[1]}, {handheld}}};
    closeIfOpen(module().ExecuteProcedure(connection(), "sp_save_DsType", dsTypes));
  });
}

}  // namespace velk
