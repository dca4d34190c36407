// Vendors: each record writes the vendor, then, unless that was refused, the vendor's account.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "masters/file_import.h"

namespace velk {

/// The fields of a vendor's record, in the order of the mapping list.
namespace vendorField {
enum : std::size_t {
  Code,
  Name,
  Address,
  Phone,
  ContactPerson,
  Locality,
  SaleType,
  Tngst,
  Cst,
  PanNumber
};
}

inline constexpr std::int32_t firstSales = 1;
inline constexpr std::int32_t secondSales = 2;
inline constexpr std::int32_t localLocality = 1;
inline constexpr std::int32_t outstationLocality = 2;
/// How a sale type and a locality are posted; letter case does not count.
std::int32_t saleTypeCode(std::string_view saleType);
std::int32_t localityCode(std::string_view locality);

using VendorRecord = std::array<std::string, 10>;

class VendorImport final : public FileImport {
 public:
  explicit VendorImport(ImportScreen& screen) : FileImport(screen) {}

  /// Code and name are trimmed in place.
  void ImportVendor(VendorRecord& vendor);

 private:
  void postRecord(std::size_t row) override;
};

}  // namespace velk
