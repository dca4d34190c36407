#include "apps/opnimp/run/company_needs.h"

#include <algorithm>

#include "base/text.h"
#include "masters/ds_type_rules.h"
#include "opening/opening_kinds.h"

namespace velk {

namespace {

CompanyNeeds openingNeeds(const OpeningImportKind& kind) {
  constexpr std::string_view ofNote = "ttdnnt";
  constexpr std::string_view ofEntry = "tn";
  return {{std::string(firstDateQuery), partyQuery(kind, "")},
          {{kind.debitNote, ofNote.size(), ofNote},
           {kind.creditNote, ofNote.size(), ofNote},
           {kind.openingBalance, ofEntry.size(), ofEntry}}};
}

/// The types of a sort, as the engines' catalogues name them.
struct TypeSort {
  std::string_view cannotTake;  // of what is passed
  std::string_view why;
  std::string_view types;
};

constexpr TypeSort typeSorts[] = {
    {"tdn", "amounts have fractions, and texts letters",
     " int integer int2 int4 int8 bigint smallint tinyint mediumint bit bool boolean "},
    {"td", "it takes numbers only",
     " double float float4 float8 real decimal numeric money smallmoney "},
    {"tn", "it takes dates only",
     " date datetime datetime2 smalldatetime timestamp timestamptz datetimeoffset "}};

/// Its first word: "timestamp" of "timestamp without time zone".
std::string wordOf(const std::string& type) {
  return lowerAscii(type.substr(0, type.find_first_of(" (")));
}

std::string_view whyUnfit(const CatalogueParameter& takes, char passed) {
  constexpr std::int32_t lengthOfDate = 10;
  if (passed == 'd' && takes.length > 0 && takes.length < lengthOfDate) {
    return "it is too short for a date";
  }
  const std::string word = " " + wordOf(takes.type) + " ";
  for (const TypeSort& sort : typeSorts) {
    const bool isOfSort = word.size() > 2 && sort.types.find(word) != std::string_view::npos;
    if (isOfSort && sort.cannotTake.find(passed) != std::string_view::npos) return sort.why;
  }
  return {};
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

std::vector<std::string> unfitParameters(const ProcedureNeed& need,
                                         const std::vector<CatalogueParameter>& takes) {
  std::vector<std::string> unfit;
  for (std::size_t i = 0; i < std::min(takes.size(), need.passes.size()); ++i) {
    const std::string_view why = whyUnfit(takes[i], need.passes[i]);
    if (why.empty()) continue;
    unfit.push_back(takes[i].name + " (" + takes[i].type + "): " + std::string(why));
  }
  return unfit;
}

}  // namespace velk
