// Opening balances, record by record: codes, references, dates and amounts.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "apps/opnimp/warnings/checked_record.h"

namespace velk {

class OpeningCheck {
 public:
  explicit OpeningCheck(const CheckedFile& file) : file_(file) {}

  /// `repeated`: the whole row was there before.
  void check(const CheckedRecord& record, bool repeated, std::vector<Warning>& warnings);
  /// What only shows when all records were seen.
  void finish(std::vector<Warning>& warnings) const;

 private:
  struct Party {
    double sum = 0;
    std::size_t line = 0;  ///< of its first record
  };

  void checkReference(const CheckedRecord& record, const std::string& party,
                      std::vector<Warning>& warnings);
  void checkEqual(const CheckedRecord& record, const std::string& party,
                  std::vector<Warning>& warnings);
  void checkDocumentDate(const CheckedRecord& record, std::vector<Warning>& warnings);
  void checkAmounts(const CheckedRecord& record, const std::string& party,
                    std::vector<Warning>& warnings);
  void warnOfSums(std::vector<Warning>& warnings) const;

  const CheckedFile& file_;
  std::unordered_map<std::string, std::size_t> lines_;     // of each party and reference
  std::unordered_map<std::string, std::size_t> nameless_;  // what is posted without a reference
  std::unordered_map<std::string, Party> parties_;
  std::vector<Misreading> bothWays_;  // dates that read day first and month first
  bool monthFirst_ = false;           // some date has the month first
};

}  // namespace velk
