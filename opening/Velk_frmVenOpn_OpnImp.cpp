#include "opening/Velk_frmVenOpn_OpnImp.h"

#include <array>
#include <utility>

namespace velk {

namespace {

constexpr std::array<TargetField, 6> fields{{
    {"Vendor ID", 1500, "vendor id", true},
    {"Vendor Name", 2700, "vendor name", true},
    referenceField,
    dateField,
    billField,
    balanceField,
}};

constexpr OpeningScreenKind kind{
    .name = "Velk_frmVenOpn_OpnImp",
    .caption = "Import VendorOpening",  // hosts and manuals know it without a blank
    .mappingListName = "lstVen",
    .fields = fields,
    .rules = openingRules("You have to select from Vendor list",
                          "The Field contains Null Value.So Cannot be mapped"),
    .secondTitleKey = "",
    .hiddenField = std::nullopt,
};

}  // namespace

Velk_frmVenOpn_OpnImp::Velk_frmVenOpn_OpnImp(Velk_ModOpnImp& module,
                                             std::unique_ptr<ImportButton> import)
    : OpeningScreen(module, kind, std::move(import)) {}

}  // namespace velk
