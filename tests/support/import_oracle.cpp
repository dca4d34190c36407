#include "tests/support/import_oracle.h"

#include <cmath>

#include "base/date_reader.h"
#include "base/numbers.h"
#include "base/text.h"
#include "base/values.h"
#include "masters/salesman_workbook.h"

namespace velk {

namespace {

using Calls = std::vector<std::string>;

std::string trimmed(const std::string& text) {
  return std::string(trim(text));
}

/// Without the first and last character where the first is a quote; doubled quotes are single.
std::string unquoted(const std::string& text) {
  if (!text.starts_with('"') || text.size() == 1) return text == "\"" ? "" : text;
  std::string result;
  const std::size_t end = lastCharacter(text);
  for (std::size_t at = 1; at < end; ++at) {
    result += text[at];
    if (text[at] == '"' && text[at + 1] == '"') ++at;
  }
  return result;
}

std::string call(std::string name, const std::vector<Value>& parameters) {
  constexpr int types[] = {200, 3, 5, 7, 200};  // by the kind of value
  for (const Value& value : parameters) {
    name += "; " + std::to_string(types[value.index()]) + " " + toText(value);
  }
  return name;
}

/// False: the run stops here.
bool addDocument(const OpeningImportKind& kind, const OracleRecord& record, Calls& calls) {
  const std::string& code = record[0];
  if (code.starts_with('X')) return true;
  Date date = dateFromCivil({2008, 3, 31});
  if (!record[3].empty()) {
    const auto reading = readDate(record[3], 2008);
    if (!reading) return &kind == &customerOpening;
    date = dateFromCivil(civilFromDate(reading->date));
    if (date >= dateFromCivil({2008, 4, 1})) return true;
  }
  const double bill = leadingNumber(record[4]);
  const double balance = std::abs(leadingNumber(record[5]));
  if (bill == 0) return true;
  calls.push_back(call(std::string(bill > 0 ? kind.debitNote : kind.creditNote),
                       {code, record[2], date, std::abs(bill), balance, std::string()}));
  calls.push_back(
      call(std::string(kind.openingBalance), {code, bill > 0 ? balance : 0.0 - balance}));
  return true;
}

std::string master(const std::string& cell) {
  return trimmed(unquoted(trimmed(cell)));
}

void addBranch(const OracleRecord& record, Calls& calls) {
  const auto doubled = [](const std::string& text) {
    std::string result;
    for (const char c : text) result.append(c == '\'' ? 2 : 1, c);
    return result;
  };
  const std::string bank = master(record[0]);
  calls.push_back(call("sp_insert_BankMaster", {doubled(bank), doubled(master(record[1]))}));
  calls.push_back(call("sp_insert_branch", {master(record[2]), master(record[3]), bank}));
}

void addVendor(const OracleRecord& record, Calls& calls) {
  const auto text = [&](std::size_t field) { return unquoted(trimmed(record[field])); };
  const std::string code = master(record[0]), name = master(record[1]), none;
  const std::string place = upperAscii(text(5)), sale = upperAscii(text(6));
  const int locality = place == "OUTSTATION" || place == "OUT STATION" ? 2 : 1;
  const int saleType = sale == "FIRST SALES" || sale == "FIRSTSALES" ? 1 : 2;
  calls.push_back(
      call("sp_insert_Vendors",
           {code,     name, text(4), text(2),  0,       0,       0,    0, none, text(3), none, code,
            locality, none, none,    saleType, text(7), text(8), none, 0, none, text(9)}));
  calls.push_back(call("sp_acc_importvendor", {name, code}));
}

void addSalesman(const OracleRecord& record, Calls& calls) {
  const auto text = [&](std::size_t field) { return unquoted(trimmed(record[field])); };
  const std::string once = unquoted(record[salesmanField::DSType]);
  if (!once.empty()) calls.push_back(call("Velk_sp_checkDefault_DSTypeValue", {once}));
  const std::string& type = record[salesmanField::DSType];
  if (once == "Van" || (type != "Retail" && type != "\"\"Q\"\"")) return;
  const std::string name = trimmed(unquoted(record[0]));
  const std::string handheld = trimmed(unquoted(record[salesmanField::HandHeldDS]));
  calls.push_back(call("sp_save_salesman", {name, text(1), text(2), text(3), 0, std::string()}));
  calls.push_back(
      call("sp_save_DsType",
           {name, std::string("DSType"), unquoted(trimmed(once)), std::string("HandHeld DS"),
            handheld == "YES" || handheld == "NO" ? handheld : std::string("No")}));
}

}  // namespace

std::vector<std::string> expectedCalls(const ImportKind& kind,
                                       const std::vector<OracleRecord>& records) {
  Calls calls;
  for (const std::size_t field : kind.mandatory) {
    for (const OracleRecord& record : records) {
      if (record[field].empty()) return calls;
    }
  }
  for (const OracleRecord& record : records) {
    if (kind.opening != nullptr) {
      if (!addDocument(*kind.opening, record, calls)) break;
    } else if (*kind.type == MasterType::BankBranch) {
      addBranch(record, calls);
    } else if (*kind.type == MasterType::Vendor) {
      addVendor(record, calls);
    } else {
      addSalesman(record, calls);
    }
  }
  return calls;
}

}  // namespace velk
