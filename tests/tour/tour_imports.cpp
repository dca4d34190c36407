#include "tests/tour/tour_imports.h"

#include <algorithm>
#include <array>
#include <utility>

#include "masters/salesman_workbook.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "platform/windows/module_path.h"
#include "platform/windows/windows_files.h"

namespace velk {

namespace {

std::wstring ownFolder() {
  const std::wstring program = modulePath(nullptr);
  return program.substr(0, program.rfind(L'\\') + 1);
}

// Van Sales is in the pick list, but is no type that salesmen may be given by import.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> edits{
    {{"Anil Kamble", "Rural"}, {"Kiran Pawar", "Van Sales"}, {"Mangesh Gaikwad", "Wholesale"}}};

}  // namespace

Places::Places(const std::wstring& pictureFolder)
    : pictures(pictureFolder + L"\\"), programs(ownFolder()) {}

std::vector<TourImport> tourImports(const Places& places) {
  const std::wstring& samples = places.samples;
  return {{.picture = "customers",
           .button = L"&Customer opening...",
           .title = L"Import Customer Opening",
           .file = samples + L"customer_opening.csv",
           .remaps = true,
           .messages = {L"Check The Error Log " + places.errorLog},
           .table = "Customer opening documents"},
          {.picture = "vendors-opening",
           .button = L"V&endor opening...",
           .title = L"Import VendorOpening",
           .file = samples + L"vendor_opening.csv",
           .messages = {L"Import Successfull", L"Check The Error Log"},
           .table = "Vendor opening documents"},
          {.picture = "banks",
           .file = samples + L"bank_branch.csv",
           .messages = {L"Import Successfull"},
           .table = "Banks and branches"},
          {.picture = "vendors",
           .type = 1,
           .typeTitle = L"Import - Vendor",
           .file = samples + L"vendor.csv",
           .messages = {L"Import Successfull"},
           .table = "Vendors"},
          {.picture = "salesmen",
           .type = 2,
           .typeTitle = L"Import - Salesman",
           .file = places.programs + L"salesmen-edited.xls",
           .exports = true,
           .messages = {L"Salesman Imported.\r\nProcessed : 7\r\nUnProcessed : 1\r\n Please check "
                        L"the error log."},
           .table = "Salesmen"}};
}

void editSalesmen(std::string_view from, std::string_view to) {
  WindowsFileSystem files;
  XlsSpreadsheet spreadsheet(files);
  const auto old = spreadsheet.open(from, ColumnSet().set());
  const auto sheet = spreadsheet.add();
  for (int row = 1; row <= old->rowCount(); ++row) {
    for (int column = 1; column <= static_cast<int>(salesmanCaptions.size()); ++column) {
      sheet->setText(row, column, old->text(row, column));
    }
    const auto edit = std::ranges::find(edits, old->text(row, salesmanColumn::Name),
                                        [](const auto& e) { return e.first; });
    if (edit != edits.end()) sheet->setText(row, salesmanColumn::DSType, edit->second);
  }
  sheet->saveAs(to);
}

}  // namespace velk
