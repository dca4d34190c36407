#include "tests/support/expected_calls.h"

#include <cmath>

#include "apps/opnimp/records/input_records.h"
#include "base/numbers.h"
#include "base/text.h"
#include "masters/salesman_workbook.h"

namespace velk {

namespace {

ExpectedPosting openingPosting(const OpeningImportKind& opening, const CellReader& cell) {
  const std::string code = cell(openingField::code);
  const double bill = leadingNumber(cell(openingField::bill));
  const double balance = leadingNumber(cell(openingField::balance));
  ExpectedPosting posting{.bill = bill, .balance = balance, .calls = {}};
  if (bill == 0) return posting;
  const bool debit = bill > 0;
  const double open = std::abs(balance);
  posting.calls = {
      {debit ? opening.debitNote : opening.creditNote,
       {{0, code}, {1, cell(openingField::reference)}, {3, std::abs(bill)}, {4, open}}},
      {opening.openingBalance, {{0, code}, {1, debit ? open : -open}}}};
  return posting;
}

/// Master data is trimmed, loses its quotes once more, and is trimmed again where `key` is set.
std::string masterValue(const std::string& cell, bool key = true) {
  const std::string text = withoutQuotes(std::string(trim(cell)));
  return key ? std::string(trim(text)) : text;
}

std::string withDoubledQuotes(const std::string& text) {
  std::string doubled;
  for (const char c : text) doubled.append(c == '\'' ? 2 : 1, c);
  return doubled;
}

ExpectedPosting bankPosting(const CellReader& cell) {
  const std::string bank = masterValue(cell(0));
  return {.calls = {{"sp_insert_BankMaster",
                     {{0, withDoubledQuotes(bank)}, {1, withDoubledQuotes(masterValue(cell(1)))}}},
                    {"sp_insert_branch",
                     {{0, masterValue(cell(2))}, {1, masterValue(cell(3))}, {2, bank}}}}};
}

ExpectedPosting vendorPosting(const CellReader& cell) {
  const std::string code = masterValue(cell(0));
  const std::string name = masterValue(cell(1));
  const auto text = [&](std::size_t field) { return masterValue(cell(field), false); };
  return {.calls = {{"sp_insert_Vendors",
                     {{0, code},
                      {1, name},
                      {2, text(4)},
                      {3, text(2)},
                      {9, text(3)},
                      {11, code},
                      {16, text(7)},
                      {17, text(8)},
                      {21, text(9)}}},
                    {"sp_acc_importvendor", {{0, name}, {1, code}}}}};
}

ExpectedPosting salesmanPosting(const CellReader& cell) {
  const std::string name = salesmanName(cell(salesmanField::Name));
  const auto text = [&](std::size_t field) { return masterValue(cell(field), false); };
  const std::string handheld(savedHandheld(handheldValue(cell(salesmanField::HandHeldDS))));
  return {.calls = {{"sp_save_salesman",
                     {{0, name},
                      {1, text(salesmanField::Address)},
                      {2, text(salesmanField::ResNumber)},
                      {3, text(salesmanField::MobNumber)},
                      {4, std::int32_t{0}},
                      {5, std::string()}}},
                    {"sp_save_DsType",
                     {{0, name},
                      {1, std::string("DSType")},
                      {2, text(salesmanField::DSType)},
                      {3, std::string("HandHeld DS")},
                      {4, handheld}}}}};
}

}  // namespace

std::string salesmanName(const std::string& cell) {
  return std::string(trim(withoutQuotes(cell)));
}

std::string handheldValue(const std::string& cell) {
  return std::string(trim(withoutQuotes(cell)));
}

// The comparison is with letter case, intended.
std::string_view savedHandheld(std::string_view value) {
  return value == "YES" ? "YES" : value == "NO" ? "NO" : "No";
}

ExpectedPosting expectedPosting(const ImportKind& kind, const CellReader& cell) {
  if (kind.opening != nullptr) return openingPosting(*kind.opening, cell);
  switch (*kind.type) {
    case MasterType::BankBranch:
      return bankPosting(cell);
    case MasterType::Vendor:
      return vendorPosting(cell);
    case MasterType::Salesman:
      break;
  }
  return salesmanPosting(cell);
}

}  // namespace velk
