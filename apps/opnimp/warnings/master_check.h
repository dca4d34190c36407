// Banks, branches and vendors, record by record.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "apps/opnimp/warnings/checked_record.h"

namespace velk {

class MasterCheck {
 public:
  /// `repeated`: the whole row was there before, which is a warning already.
  void check(const CheckedRecord& record, bool repeated, std::vector<Warning>& warnings);

 private:
  struct Named {
    std::string name;
    std::size_t line = 0;
  };
  void checkRepetition(const CheckedRecord& record, std::vector<Warning>& warnings);
  void checkBankName(const CheckedRecord& record, std::vector<Warning>& warnings);

  std::unordered_map<std::string, std::size_t> lines_;  // of each vendor or branch
  std::unordered_map<std::string, Named> banks_;
};

}  // namespace velk
