// Banks and branches: each record writes its bank, then its branch.
#include <array>

#include "base/text.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"

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

void Velk_frmBankBranch_OpnImp::ImportBankBranch() {
  importFile(&Velk_frmBankBranch_OpnImp::postBankAndBranch);
}

void Velk_frmBankBranch_OpnImp::postBankAndBranch(std::size_t row) {
  std::string bankCode = value(row, Field::BankCode);
  std::string bankName = value(row, Field::BankName);
  ImportBank(bankCode, bankName);
  // Read again: the bank's values have been changed.
  bankCode = value(row, Field::BankCode);
  bankName = value(row, Field::BankName);
  std::string branchCode = value(row, Field::BranchCode);
  std::string branchName = value(row, Field::BranchName);
  ImportBranch(bankCode, bankName, branchCode, branchName);
}

void Velk_frmBankBranch_OpnImp::ImportBank(std::string& BankCode, std::string& BankName) {
  for (std::string* text : {&BankCode, &BankName}) {
    trimInPlace(*text);
    // For this procedure only, intended.
    doubleQuotes(*text);
  }
  const std::array<ProcedureParameter, 2> bank{
      {{BankCode, DataType::VarChar}, {BankName, DataType::VarChar}}};
  call("sp_insert_BankMaster", bank);
}

void Velk_frmBankBranch_OpnImp::ImportBranch(std::string& BankCode, const std::string& /*BankName*/,
                                             std::string& BranchCode, std::string& BranchName) {
  for (std::string* text : {&BranchCode, &BranchName, &BankCode}) trimInPlace(*text);
  const std::array<ProcedureParameter, 3> branch{{{BranchCode, DataType::VarChar},
                                                  {BranchName, DataType::VarChar},
                                                  {BankCode, DataType::VarChar}}};
  call("sp_insert_branch", branch);
}

}  // namespace velk
