#include "masters/bank_branch_import.h"

#include <array>

#include "base/text.h"

namespace velk {

namespace {

enum Field : std::size_t { BankCode, BankName, BranchCode, BranchName };

void trimInPlace(std::string& text) {
  text = std::string(trim(text));
}

void doubleQuotes(std::string& text) {
  for (auto at = text.find('\''); at != std::string::npos; at = text.find('\'', at + 2)) {
    text.insert(at, 1, '\'');
  }
}

}  // namespace

// A bank with several branches is written once for each of them: its procedure takes one that
// exists already.
void BankBranchImport::postRecord(std::size_t row) {
  std::string bankCode = value(row, Field::BankCode);
  std::string bankName = value(row, Field::BankName);
  ImportBank(bankCode, bankName);
  // Read again, because ImportBank has doubled the quotes.
  bankCode = value(row, Field::BankCode);
  bankName = value(row, Field::BankName);
  std::string branchCode = value(row, Field::BranchCode);
  std::string branchName = value(row, Field::BranchName);
  ImportBranch(bankCode, bankName, branchCode, branchName);
}

// Only the bank's procedure gets its quotes doubled: databases hold bank codes written so, and the
// branch's procedure finds them by its own rule.
void BankBranchImport::ImportBank(std::string& BankCode, std::string& BankName) {
  for (std::string* text : {&BankCode, &BankName}) {
    trimInPlace(*text);
    doubleQuotes(*text);
  }
  call("sp_insert_BankMaster", std::array<ProcedureParameter, 2>{{{BankCode}, {BankName}}});
}

void BankBranchImport::ImportBranch(std::string& BankCode, const std::string& /*BankName*/,
                                    std::string& BranchCode, std::string& BranchName) {
  for (std::string* text : {&BranchCode, &BranchName, &BankCode}) trimInPlace(*text);
  call("sp_insert_branch",
       std::array<ProcedureParameter, 3>{{{BranchCode}, {BranchName}, {BankCode}}});
}

}  // namespace velk
