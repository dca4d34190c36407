// Vendors: each record writes the vendor, then, unless that was refused, the vendor's account.
#pragma once

#include <array>
#include <string>

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
