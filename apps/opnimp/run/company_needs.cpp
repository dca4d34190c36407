#include "apps/opnimp/run/company_needs.h"

#include "masters/ds_type_rules.h"
#include "opening/opening_kinds.h"

namespace velk {

namespace {

CompanyNeeds openingNeeds(const OpeningImportKind& kind) {
  constexpr std::size_t ofNote = 6;
  constexpr std::size_t ofEntry = 2;
  return {{std::string(firstDateQuery), partyQuery(kind, "")},
          {{kind.debitNote, ofNote}, {kind.creditNote, ofNote}, {kind.openingBalance, ofEntry}}};
}

}  // namespace

CompanyNeeds needsOf(const ImportKind& kind) {
  if (kind.opening != nullptr) return openingNeeds(*kind.opening);
  switch (*kind.type) {
    case MasterType::BankBranch:
      return {{}, {{"sp_insert_BankMaster", 2}, {"sp_insert_branch", 3}}};
    case MasterType::Vendor:
      return {{}, {{"sp_insert_Vendors", 22}, {"sp_acc_importvendor", 2}}};
    default:
      return {{dsTypeQuery("")},
              {{"sp_Check_DSCaption", 1},
               {"Velk_sp_checkDefault_DSTypeValue", 1},
               {"sp_save_salesman", 6},
               {"sp_save_DsType", 5}}};
  }
}

}  // namespace velk
