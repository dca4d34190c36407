#include "mapping/Velk_frmCustOpn_OpnImp.h"

#include <array>
#include <utility>

namespace velk {

namespace {

constexpr std::array<TargetField, 7> fields{{
    {"Customer ID", 1500, "customer id", true},
    {"Company Name", 2700, "customer name", true},
    referenceField,
    dateField,
    billField,
    balanceField,
    {"Document Type", 1440, "", true},
}};

constexpr OpeningScreenKind kind{
    .name = "Velk_frmCustOpn_OpnImp",
    .caption = "Import Customer Opening",
    .mappingListName = "lstCust",
    .fields = fields,
    .rules = openingRules("You have to select from customer list",
                          "The Field contains Null Value. So Cannot be mapped"),
    .secondTitleKey = "Customer Name",
    .hiddenField = 6,
};

}  // namespace

Velk_frmCustOpn_OpnImp::Velk_frmCustOpn_OpnImp(Velk_ModOpnImp& module,
                                               std::unique_ptr<ImportButton> import)
    : OpeningScreen(module, kind, std::move(import)) {}

}  // namespace velk
