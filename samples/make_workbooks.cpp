// Makes the sample workbooks: make_workbooks FOLDER
#include <array>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "masters/salesman_workbook.h"
#include "platform/native/native_files.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"

using namespace velk;

namespace {

using Row = std::array<std::string_view, salesmanCaptions.size()>;

struct Book {
  std::string_view name;
  std::vector<Row> rows;  ///< from row 2
  Row captions = salesmanCaptions;
};

constexpr Row blankRow{};
constexpr Row anil{
    "Anil Kamble", "14 Ganesh Peth, Pune", "020-24450011", "9822011223", "Retail", "Wholesale",
    "YES"};
constexpr Row bhaskar{"Bhaskar Rao", "7 Dapodi, Pune", "",  "9850123456",
                      "Wholesale",   "Wholesale",      "NO"};
constexpr Row ravi{"Ravi Jagtap", "30 Bibwewadi, Pune", "020-24219911", "9822556677", "", "Retail",
                   "NO"};

std::vector<Book> books() {
  return {
      {"salesman.xls",
       {anil,
        bhaskar,
        // "Retial" is wrong on purpose: the import has to refuse a type that it does not know.
        {"Dilip Sawant", "9 Kasba Peth, Pune", "020-24478800", "9890554433", "Retail", "Retial",
         "NO"},
        {"Ganpat Shelar", "22 Dhankawadi, Pune", "", "09422001122", "Rural", "Van Sales", "No"},
        {"Joseph D'Silva", "3 Fatima Nagar, Pune", "020-26811717", "9823098230", "Wholesale",
         "Retail", "YES"},
        {"Kiran Pawar", "51 Chinchwad", "020-27453311", "9960112233", "Retail", "Institution",
         "NO"},
        {"Mangesh Gaikwad", "18 Hadapsar, Pune", "", "9881234509", "", "Retail", ""},
        {"Noël Pinto", "5 Khadki Bazaar, Pune", "020-25812299", "9822334455", "Rural", "Rural",
         "NO"},
        ravi,
        // Texts that a spreadsheet would take for a formula and for a number if they were typed in.
        {"Sunil & Co", "=1+1 Market Yard, Pune", "020-24261144", "009822009900", "", "Rural",
         "YES"}}},
      {"salesman_columns.xls",
       {anil},
       {"Salesman", "Address", "ResNumber", "MobNumber", "DS Type", "DSType", ""}},
      {"salesman_blank_row.xls", {anil, bhaskar, blankRow, ravi}},
      {"salesman_no_name.xls", {anil, {"", "7 Dapodi, Pune", "", "", "", "Retail", "NO"}}},
  };
}

void writeRow(WorksheetWriter& sheet, int number, const Row& row) {
  int column = 1;
  for (const std::string_view text : row) sheet.setText(number, column++, text);
}

void make(const Book& book, const std::string& folder) {
  NativeFileSystem files;
  XlsSpreadsheet spreadsheet(files);
  const auto sheet = spreadsheet.add();
  writeSalesmanCaptions(*sheet);
  writeRow(*sheet, 1, book.captions);
  int number = 1;
  for (const Row& row : book.rows) writeRow(*sheet, ++number, row);
  sheet->autoFit(1, static_cast<int>(salesmanCaptions.size()));
  writePickList(
      *sheet, dsTypeList,
      std::vector<std::string>{"Retail", "Wholesale", "Rural", "Van Sales", "Institution"});
  writePickList(*sheet, handheldList, std::vector<std::string>{"YES", "NO"});
  sheet->saveAs(folder + "/" + std::string(book.name));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_workbooks FOLDER\n";
    // The same status as the runner's for wrong usage; 4 below is its status for a file.
    return 3;
  }
  try {
    for (const Book& book : books()) make(book, argv[1]);
  } catch (const RuntimeError& error) {
    std::cerr << "make_workbooks: " << error.description() << '\n';
    return 4;
  }
}
