#include "tests/support/salesmen.h"

#include "platform/native/native_files.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"

namespace velk {

SalesmanScreen::SalesmanScreen()
    : screen(std::dynamic_pointer_cast<Velk_frmBankBranch_OpnImp>(
          world.open(&Velk_ClsOpnImp::ImportBankBranchOpening))) {
  screen->cboType.userChoose(static_cast<int>(Velk_frmBankBranch_OpnImp::Type::Salesman));
  FakeConnection& database = *world.database;
  database.answerRows("sp_Check_DSCaption", {{1}});
  database.answerRows("Velk_sp_checkDefault_DSTypeValue", {});
  database.onCall = [&database](const FakeCall& call) {
    if (call.text != "Velk_sp_checkDefault_DSTypeValue") return;
    const bool isDefault = toText(call.parameters.at(0).value) != "Van";
    database.answerRows(call.text, {{isDefault ? 1 : 0}});
  };
  const std::string query =
      "Select Active From DsType_Master Where DSTypeName = 'DSType' and DSTypeValue = '";
  database.answerRows(query, {});
  database.answerRows(query + "Retail'", {{1}});
  database.answerRows(query + "Old'", {{0}});
}

void SalesmanScreen::view(const Texts& rows) {
  world.view(*screen, workbook(rows));
}

EventResult SalesmanScreen::exportTo(std::string_view path) {
  world.desktop.chooseFile(std::string(path));
  return screen->cmdExport.userClick();
}

std::string workbook(const Texts& rows) {
  MemoryFiles files;
  const auto sheet = XlsSpreadsheet(files).add();
  int row = 0;
  for (const std::string& text : rows) {
    ++row;
    int column = 0;
    for (std::size_t start = 0; start <= text.size();) {
      const std::size_t end = std::min(text.find('|', start), text.size());
      sheet->setText(row, ++column, std::string_view(text).substr(start, end - start));
      start = end + 1;
    }
  }
  sheet->saveAs("book.xls");
  return files.contents["book.xls"];
}

Texts sheetRows(const std::string& path) {
  NativeFileSystem files;
  const auto sheet = XlsSpreadsheet(files).open(path, ColumnSet().set());
  Texts rows;
  for (int row = 1; row <= sheet->rowCount(); ++row) {
    std::string& text = rows.emplace_back(sheet->text(row, 1));
    for (int column = 2; column <= 7; ++column) text += "|" + sheet->text(row, column);
  }
  return rows;
}

}  // namespace velk
