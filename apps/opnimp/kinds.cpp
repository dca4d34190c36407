#include "apps/opnimp/kinds.h"

#include <algorithm>
#include <array>

#include "opening/customer_opening.h"
#include "opening/vendor_opening.h"

namespace velk {

namespace {

constexpr KindFields openingFields{.code = 0, .date = 3, .bill = 4, .balance = 5};
constexpr std::array<std::size_t, 3> openingMandatory{openingFields.code, openingFields.bill,
                                                      openingFields.balance};
// The screen counts in 16 bits, and the import adds 1.
constexpr std::size_t openingLargestCount = 32766;

}  // namespace

std::span<const ImportKind> importKinds() {
  static const std::array<ImportKind, 2> kinds{{
      {"customer-opening", "opening balances of customers", &Velk_ClsOpnImp::ImportCustomerOpening,
       &customerOpening, openingFields, openingMandatory, openingLargestCount},
      {"vendor-opening", "opening balances of vendors", &Velk_ClsOpnImp::ImportVendorOpening,
       &vendorOpening, openingFields, openingMandatory, openingLargestCount},
  }};
  return kinds;
}

const ImportKind* findKind(std::string_view name) {
  const std::span<const ImportKind> kinds = importKinds();
  const auto found = std::ranges::find(kinds, name, &ImportKind::name);
  return found == kinds.end() ? nullptr : &*found;
}

}  // namespace velk
