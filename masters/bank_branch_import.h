// Banks and branches: each record writes its bank, then its branch.
#pragma once

#include <string>

#include "masters/file_import.h"

namespace velk {

class BankBranchImport final : public FileImport {
 public:
  explicit BankBranchImport(ImportScreen& screen) : FileImport(screen) {}

  /// Both values are changed in place: trimmed, their single quotes doubled.
  void ImportBank(std::string& BankCode, std::string& BankName);
  /// The values are trimmed in place; the bank's name is not used.
  void ImportBranch(std::string& BankCode, const std::string& BankName, std::string& BranchCode,
                    std::string& BranchName);

 private:
  void postRecord(std::size_t row) override;
};

}  // namespace velk
