#include "apps/opnimp/cli/kinds.h"

#include <algorithm>

#include "masters/salesman_workbook.h"
#include "opening/opening_kinds.h"

namespace velk {

namespace {

constexpr std::array<std::size_t, 3> openingMandatory{openingField::code, openingField::bill,
                                                      openingField::balance};
// Positions in the mapping list of each master type: all four of a branch, code and name of a
// vendor.
constexpr std::array<std::size_t, 4> bankMandatory{0, 1, 2, 3};
constexpr std::array<std::size_t, 2> vendorMandatory{0, 1};
constexpr std::array<std::size_t, 1> salesmanMandatory{salesmanField::Name};

constexpr ImportKind openingKind(std::string_view name, std::string_view what,
                                 decltype(ImportKind::open) open,
                                 std::span<const FieldTitle> titles,
                                 const OpeningImportKind& opening) {
  return {.name = name,
          .what = what,
          .open = open,
          .titles = titles,
          .mandatory = openingMandatory,
          .largestRecordCount = openingLargestCount,
          .becomes = {"Notes", "Entries"},
          .opening = &opening};
}

}  // namespace

std::span<const ImportKind> importKinds() {
  static const std::array<ImportKind, 5> kinds{
      {openingKind("customer-opening", "opening balances of customers",
                   &Velk_ClsOpnImp::ImportCustomerOpening, customerOpeningFields, customerOpening),
       openingKind("vendor-opening", "opening balances of vendors",
                   &Velk_ClsOpnImp::ImportVendorOpening, vendorOpeningFields, vendorOpening),
       {.name = "bank-branch",
        .what = "banks and their branches",
        .titles = bankBranchFields,
        .mandatory = bankMandatory,
        .becomes = {"Banks", "Branches"},
        .type = MasterType::BankBranch,
        .columns = 4,
        .sharesFirst = true},
       {.name = "vendor",
        .what = "vendors and their accounts",
        .titles = vendorFields,
        .mandatory = vendorMandatory,
        .becomes = {"Vendors", "Accounts"},
        .type = MasterType::Vendor,
        .columns = 10,
        .stopsAtFailure = true},
       {.name = "salesman",
        .what = "salesmen and their DS types; FILE is an .xls workbook",
        .format = FileFormat::Workbook,
        .titles = {},
        .mandatory = salesmanMandatory,
        .becomes = {"Salesmen", "DS types"},
        .type = MasterType::Salesman,
        .replaces = true}}};
  return kinds;
}

const ImportKind* findKind(std::string_view name) {
  const std::span<const ImportKind> kinds = importKinds();
  const auto found = std::ranges::find(kinds, name, &ImportKind::name);
  return found == kinds.end() ? nullptr : &*found;
}

}  // namespace velk
