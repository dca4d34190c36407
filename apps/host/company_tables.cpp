#include "apps/host/company_tables.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "base/errors.h"
#include "platform/windows/windows_text.h"

namespace velk {

namespace {

// Debit and credit notes in one list, in the order in which a user reads a party's documents.
CompanyTable openingDocuments(std::string_view name, const std::string& party,
                              const std::string& parties) {
  const auto notes = [&](const std::string& note) {
    return "SELECT '" + note + "', N." + party + "ID, " + party +
           "Name, DocReference, DocumentDate, Amount, Balance FROM " + party + note +
           "Note N JOIN " + parties + " P ON P." + party + "ID = N." + party + "ID";
  };
  return {name,
          notes("Debit") + " UNION ALL " + notes("Credit") + " ORDER BY 2, 5",
          {{"Note"},
           {party == "Customer" ? "Customer" : "Vendor"},
           {"Name"},
           {"Reference"},
           {"Date", ColumnKind::Date},
           {"Amount", ColumnKind::Amount},
           {"Balance", ColumnKind::Amount}}};
}

CompanyTable customerBalances() {
  return {"Customer opening balances",
          "SELECT B.CustomerID, CustomerName, OpeningBalance FROM CustomerOpeningBalance B "
          "JOIN Customer C ON C.CustomerID = B.CustomerID ORDER BY 1",
          {{"Customer"}, {"Name"}, {"Opening balance", ColumnKind::Amount}}};
}

CompanyTable vendorBalances() {
  return {"Vendor opening balances",
          "SELECT B.VendorID, VendorName, OpeningBalance FROM VendorOpeningBalance B "
          "JOIN Vendors V ON V.VendorID = B.VendorID ORDER BY 1",
          {{"Vendor"}, {"Name"}, {"Opening balance", ColumnKind::Amount}}};
}

CompanyTable banksAndBranches() {
  return {"Banks and branches",
          "SELECT K.BankCode, BankName, BranchCode, BranchName FROM BranchMaster R "
          "JOIN BankMaster K ON K.BankCode = R.BankCode ORDER BY 1, 3",
          {{"Bank"}, {"Bank name"}, {"Branch"}, {"Branch name"}}};
}

CompanyTable vendors() {
  return {"Vendors",
          "SELECT V.VendorID, VendorName, Address, Phone, ContactPerson, "
          "CASE Locality WHEN 1 THEN 'Local' ELSE 'Outstation' END, "
          "CASE SaleType WHEN 1 THEN 'First Sales' ELSE 'Second Sales' END, "
          "TNGST, CST, PanNumber, AccountName FROM Vendors V "
          "LEFT JOIN VendorAccount A ON A.VendorID = V.VendorID ORDER BY 1",
          {{"Vendor"},
           {"Name"},
           {"Address"},
           {"Phone"},
           {"Contact"},
           {"Locality"},
           {"Sale type"},
           {"TNGST"},
           {"CST"},
           {"Pan number"},
           {"Account"}}};
}

// The details have a row for each value; the two maxima make columns of them.
CompanyTable salesmen() {
  return {"Salesmen",
          "SELECT Salesman_name, Address, ResidentialNUmber, MobileNumber, "
          "max(CASE WHEN DSTypeCtlPos = 1 THEN DSTypeValue END), "
          "max(CASE WHEN DSTypeCtlPos = 2 THEN DSTypeValue END) FROM Salesman "
          "LEFT JOIN DStype_Details USING (SalesmanID) LEFT JOIN DSType_Master USING (DSTypeID) "
          "GROUP BY SalesmanID ORDER BY 1",
          {{"Salesman"}, {"Address"}, {"Telephone"}, {"Mobile"}, {"DS type"}, {"Handheld"}}};
}

CompanyTable customers() {
  return {"Customers",
          "SELECT CustomerID, CustomerName, Address, City, Phone FROM Customer ORDER BY 1",
          {{"Customer"}, {"Name"}, {"Address"}, {"City"}, {"Phone"}}};
}

// The embedded database has no type for dates: they are texts, year first.
std::string dateShown(const Value& value) {
  std::string text = toText(value);
  if (!isNull(value)) {
    trapErrors([&] { text = formatDayFirst(toDate(value, 0)); }, [](const RuntimeError&) {});
  }
  return text;
}

std::string shown(const Value& value, ColumnKind kind) {
  if (kind == ColumnKind::Date) return dateShown(value);
  if (const auto* number = std::get_if<double>(&value)) {
    std::array<char, 320> text{};  // the longest double has 309 digits before its point
    const int length = std::snprintf(text.data(), text.size(), "%.2f", *number);
    return {text.data(), static_cast<std::size_t>(length)};
  }
  return toText(value);
}

}  // namespace

std::span<const CompanyTable> companyTables() {
  static const CompanyTable tables[] = {
      openingDocuments("Customer opening documents", "Customer", "Customer"),
      customerBalances(),
      openingDocuments("Vendor opening documents", "Vendor", "Vendors"),
      vendorBalances(),
      banksAndBranches(),
      vendors(),
      salesmen(),
      customers()};
  return tables;
}

std::vector<TableRow> tableRows(Connection& connection, const CompanyTable& table) {
  std::vector<TableRow> rows;
  const auto result = connection.Execute(table.query);
  for (; !result->isEOF(); result->MoveNext()) {
    TableRow& row = rows.emplace_back();
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      row.push_back(shown(result->field(i), table.columns[i].kind));
    }
  }
  result->Close();
  return rows;
}

// The log is written in the code page of the machine, with the line ends of Windows.
std::vector<TableRow> errorLogLines(const std::wstring& path) {
  const CodePage codePage = activeCodePage();
  std::vector<TableRow> lines;
  const std::filesystem::path file(path);
  std::ifstream log(file, std::ios::binary);
  if (!log && std::filesystem::exists(file)) throw RuntimeError(ErrorNumber::PermissionDenied);
  for (std::string line; std::getline(log, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back({codePage.decode(line)});
  }
  std::ranges::reverse(lines);
  return lines;
}

}  // namespace velk
