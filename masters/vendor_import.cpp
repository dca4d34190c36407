// Vendors: each record writes the vendor, then, unless that was refused, the vendor's account.
#include <algorithm>
#include <array>
#include <initializer_list>

#include "base/text.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"

namespace velk {

namespace {

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> names) {
  const std::string upper = upperAscii(text);
  return std::ranges::find(names, upper) != names.end();
}

// The defaults point in opposite directions, intended: first sales 1, all else 2 ...
std::int32_t saleTypeCode(std::string_view saleType) {
  return isOneOf(saleType, {"FIRST SALES", "FIRSTSALES"}) ? 1 : 2;
}

// ... and outstation 2, all else (local) 1.
std::int32_t localityCode(std::string_view locality) {
  return isOneOf(locality, {"OUTSTATION", "OUT STATION"}) ? 2 : 1;
}

}  // namespace

void Velk_frmBankBranch_OpnImp::ImportVendorMaster() {
  importFile(&Velk_frmBankBranch_OpnImp::postVendor);
}

void Velk_frmBankBranch_OpnImp::postVendor(std::size_t row) {
  VendorRecord vendor;
  std::size_t field = 0;
  for (std::string* text :
       {&vendor.code, &vendor.name, &vendor.address, &vendor.phone, &vendor.contactPerson,
        &vendor.locality, &vendor.saleType, &vendor.tngst, &vendor.cst, &vendor.panNumber}) {
    *text = value(row, field++);
  }
  ImportVendor(vendor);
}

void Velk_frmBankBranch_OpnImp::ImportVendor(VendorRecord& vendor) {
  const std::int32_t saleType = saleTypeCode(vendor.saleType);
  const std::int32_t locality = localityCode(vendor.locality);
  vendor.code = std::string(trim(vendor.code));
  vendor.name = std::string(trim(vendor.name));
  const auto text = [](const std::string& value) {
    return ProcedureParameter{value, DataType::VarChar};
  };
  const auto number = [](std::int32_t value) {
    return ProcedureParameter{value, DataType::Integer};
  };
  const ProcedureParameter none = text("");
  const ProcedureParameter zero = number(0);
  const std::array<ProcedureParameter, 22> parameters{text(vendor.code),
                                                      text(vendor.name),
                                                      text(vendor.contactPerson),
                                                      text(vendor.address),
                                                      zero,
                                                      zero,
                                                      zero,
                                                      zero,
                                                      none,
                                                      text(vendor.phone),
                                                      none,
                                                      text(vendor.code),
                                                      number(locality),
                                                      none,
                                                      none,
                                                      number(saleType),
                                                      text(vendor.tngst),
                                                      text(vendor.cst),
                                                      none,
                                                      zero,
                                                      none,
                                                      text(vendor.panNumber)};
  call("sp_insert_Vendors", parameters);
  if (module().lastErrorNumber() != 0) return;
  // The name before the code here, intended.
  const std::array<ProcedureParameter, 2> account{text(vendor.name), text(vendor.code)};
  call("sp_acc_importvendor", account);
}

}  // namespace velk
