// Records as rows: their quotes, the number of their fields, and rows that are there twice.
#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

#include "apps/opnimp/warnings/checked_record.h"

namespace velk {

/// The record as a whole, and what the import takes from it.
Misreading misreadRow(const CheckedRecord& row);

class RowCheck {
 public:
  explicit RowCheck(const CheckedFile& file);

  /// False when the row is so broken that its values need no look.
  bool check(const CheckedRecord& row, std::vector<Warning>& warnings);
  /// Whether the row was equal to an earlier one.
  bool wasRepeated() const { return repeated_; }

 private:
  /// The harm done to the row as a whole; empty if there is none.
  std::optional<WarningId> faultOf(const CheckedRecord& row);
  std::optional<WarningId> quoteFault(std::size_t record);

  const CsvRecords& input_;
  const std::size_t columns_;
  std::size_t named_;    // of them, up to the last one that has a title or is used
  bool goesOn_ = false;  // the last row seems to go on in this one
  bool repeated_ = false;
  std::unordered_map<std::string_view, std::size_t> lines_;  // of each row, by its bytes
};

}  // namespace velk
