#include "masters/vendor_import.h"

#include <algorithm>
#include <initializer_list>

#include "base/text.h"

namespace velk {

namespace {

using namespace vendorField;

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> names) {
  const std::string upper = upperAscii(text);
  return std::ranges::find(names, upper) != names.end();
}

/// What parameters are made of, beside the fields themselves.
enum Source : std::size_t { SaleTypeCode = PanNumber + 1, LocalityCode, Zero, Empty, SourceCount };

/// The parameters of sp_insert_Vendors, in its order. What the zeros and empty texts mean is the
/// database's matter.
constexpr std::array<std::size_t, 22> vendorParameters{
    Code,  Name,  ContactPerson, Address, Zero,         Zero,     Zero,  Zero,
    Empty, Phone, Empty,         Code,    LocalityCode, Empty,    Empty, SaleTypeCode,
    Tngst, Cst,   Empty,         Zero,    Empty,        PanNumber};

std::array<ProcedureParameter, SourceCount> sourcesOf(const VendorRecord& vendor) {
  std::array<ProcedureParameter, SourceCount> sources;
  for (std::size_t field = 0; field < vendor.size(); ++field)
    sources.at(field) = {vendor.at(field)};
  sources[SaleTypeCode] = {saleTypeCode(vendor[SaleType]), DataType::Integer};
  sources[LocalityCode] = {localityCode(vendor[Locality]), DataType::Integer};
  sources[Zero] = {0, DataType::Integer};
  sources[Empty] = {std::string()};
  return sources;
}

}  // namespace

// The defaults point in opposite directions: what is not first sales is second sales, and what is
// not outstation is local.
std::int32_t saleTypeCode(std::string_view saleType) {
  return isOneOf(saleType, {"FIRST SALES", "FIRSTSALES"}) ? firstSales : secondSales;
}

std::int32_t localityCode(std::string_view locality) {
  return isOneOf(locality, {"OUTSTATION", "OUT STATION"}) ? outstationLocality : localLocality;
}

void VendorImport::postRecord(std::size_t row) {
  VendorRecord vendor;
  for (std::size_t field = 0; field < vendor.size(); ++field) vendor.at(field) = value(row, field);
  ImportVendor(vendor);
}

// A vendor that was refused gets no account: one without its vendor could not be found again.
void VendorImport::ImportVendor(VendorRecord& vendor) {
  for (const std::size_t field : {Code, Name}) {
    vendor.at(field) = std::string(trim(vendor.at(field)));
  }
  const auto sources = sourcesOf(vendor);
  std::array<ProcedureParameter, vendorParameters.size()> parameters;
  std::ranges::transform(vendorParameters, parameters.begin(),
                         [&](std::size_t source) { return sources.at(source); });
  call("sp_insert_Vendors", parameters);
  if (screen_.module().lastErrorNumber() != 0) return;
  // This procedure takes the name before the code.
  call("sp_acc_importvendor", std::array<ProcedureParameter, 2>{{{vendor[Name]}, {vendor[Code]}}});
}

}  // namespace velk
