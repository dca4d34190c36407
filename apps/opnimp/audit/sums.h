// The amounts of records, as the file has them, and their sums by side.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/input_records.h"

namespace velk {

/// Amounts by side: debit where the bill amount is above 0, credit where it is below. Master data
/// has none.
struct Sums {
  std::size_t count = 0;
  long double billDebit = 0;
  long double billCredit = 0;
  long double balanceDebit = 0;
  long double balanceCredit = 0;
  bool operator==(const Sums&) const = default;
  Sums& operator+=(const Sums& more);
};

/// Counts one more and adds its amounts to the side of `sign`.
void addTo(Sums& sums, double sign, double bill, double balance);

struct FileAmounts {
  std::string code;
  double bill = 0;
  double balance = 0;
};

/// What the file says of a record, of which `width` fields have to be read (mappedWidth); empty for
/// amounts beyond the range of numbers. Master data has no amounts, and its codes are not compared.
std::optional<FileAmounts> amountsOf(const ImportKind& kind, const InputRecords& input,
                                     const std::vector<FieldMapping>& mapping, std::size_t record,
                                     std::size_t width);

}  // namespace velk
