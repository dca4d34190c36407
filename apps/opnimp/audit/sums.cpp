#include "apps/opnimp/audit/sums.h"

#include <cmath>

#include "base/errors.h"
#include "base/numbers.h"

namespace velk {

Sums& Sums::operator+=(const Sums& more) {
  count += more.count;
  billDebit += more.billDebit;
  billCredit += more.billCredit;
  balanceDebit += more.balanceDebit;
  balanceCredit += more.balanceCredit;
  return *this;
}

// An amount of 0 is counted, but belongs to neither side.
void addTo(Sums& sums, double sign, double bill, double balance) {
  ++sums.count;
  if (sign > 0) {
    sums.billDebit += std::abs(bill);
    sums.balanceDebit += std::abs(balance);
  } else if (sign < 0) {
    sums.billCredit += std::abs(bill);
    sums.balanceCredit += std::abs(balance);
  }
}

std::optional<FileAmounts> amountsOf(const ImportKind& kind, const InputRecords& input,
                                     const std::vector<FieldMapping>& mapping, std::size_t record,
                                     std::size_t width) {
  if (kind.opening == nullptr) return FileAmounts{};
  const auto fields = input.fields(record, width);
  const auto cell = [&](std::size_t field) { return mappedCell(fields, mapping, field); };
  try {
    return FileAmounts{std::string(cell(openingField::code)),
                       leadingNumber(cell(openingField::bill)),
                       leadingNumber(cell(openingField::balance))};
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

}  // namespace velk
