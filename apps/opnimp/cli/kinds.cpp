#include "apps/opnimp/cli/kinds.h"

#include <algorithm>
#include <limits>

#include "masters/salesman_workbook.h"
#include "opening/opening_kinds.h"

namespace velk {

namespace {

constexpr std::array<std::size_t, 3> openingMandatory{openingField::code, openingField::bill,
                                                      openingField::balance};
constexpr std::array<std::size_t, 4> bankMandatory{0, 1, 2, 3};
constexpr std::array<std::size_t, 2> vendorMandatory{0, 1};
constexpr std::array<std::size_t, 1> salesmanMandatory{salesmanField::Name};
// The import adds 1 to the count, of 16 bits on the opening screens, of 32 on the master screen.
constexpr std::size_t openingLargestCount = 32766;
constexpr std::size_t masterLargestCount = std::numeric_limits<std::int32_t>::max() - 1;

constexpr ImportKind openingKind(std::string_view name, std::string_view what,
                                 decltype(ImportKind::open) open,
                                 const OpeningImportKind& opening) {
  return {.name = name,
          .what = what,
          .open = open,
          .mandatory = openingMandatory,
          .largestRecordCount = openingLargestCount,
          .becomes = {"Notes", "Entries"},
          .opening = &opening,
          .type = std::nullopt,
          .columns = 0,
          .stopsAtFailure = false};
}

}  // namespace

std::span<const ImportKind> importKinds() {
  static const std::array<ImportKind, 5> kinds{
      {openingKind("customer-opening", "opening balances of customers",
                   &Velk_ClsOpnImp::ImportCustomerOpening, customerOpening),
       openingKind("vendor-opening", "opening balances of vendors",
                   &Velk_ClsOpnImp::ImportVendorOpening, vendorOpening),
       {.name = "bank-branch",
        .what = "banks and their branches",
        .open = &Velk_ClsOpnImp::ImportBankBranchOpening,
        .mandatory = bankMandatory,
        .largestRecordCount = masterLargestCount,
        .becomes = {"Banks", "Branches"},
        .opening = nullptr,
        .type = MasterType::BankBranch,
        .columns = 4,
        .stopsAtFailure = false},
       {.name = "vendor",
        .what = "vendors and their accounts",
        .open = &Velk_ClsOpnImp::ImportBankBranchOpening,
        .mandatory = vendorMandatory,
        .largestRecordCount = masterLargestCount,
        .becomes = {"Vendors", "Accounts"},
        .opening = nullptr,
        .type = MasterType::Vendor,
        .columns = 10,
        .stopsAtFailure = true},
       {.name = "salesman",
        .what = "salesmen and their DS types; FILE is an .xls workbook",
        .format = FileFormat::Workbook,
        .open = &Velk_ClsOpnImp::ImportBankBranchOpening,
        .mandatory = salesmanMandatory,
        .largestRecordCount = masterLargestCount,
        .becomes = {"Salesmen", "DS types"},
        .opening = nullptr,
        .type = MasterType::Salesman,
        .columns = 0,
        .stopsAtFailure = false,
        .replaces = true}}};
  return kinds;
}

const ImportKind* findKind(std::string_view name) {
  const std::span<const ImportKind> kinds = importKinds();
  const auto found = std::ranges::find(kinds, name, &ImportKind::name);
  return found == kinds.end() ? nullptr : &*found;
}

}  // namespace velk
