// The component's public class: the entry points that open the import screens, and the reader of
// comma-separated records.
#pragma once

#include <memory>

#include "shared/record_reader.h"

namespace velk {

class Velk_ClsOpnImp : public RecordReader {
 public:
  explicit Velk_ClsOpnImp(Velk_ModOpnImp& module) : RecordReader(module), module_(module) {}

  // The entry points. Each opens a screen, modeless, and returns; the screen lives until it is
  // closed. The connection and the icon (null: the default one) stay the caller's. An error that
  // the screen's set-up does not trap is raised.

  /// Customer opening balances.
  void ImportCustomerOpening(const std::shared_ptr<Connection>& myConn,
                             const std::shared_ptr<const Picture>& AppIcon);
  /// Vendor opening balances.
  void ImportVendorOpening(const std::shared_ptr<Connection>& myConn,
                           const std::shared_ptr<const Picture>& AppIcon);
  /// Master data: banks and branches, vendors, salesmen.
  void ImportBankBranchOpening(const std::shared_ptr<Connection>& myConn,
                               const std::shared_ptr<const Picture>& AppIcon);

 private:
  Velk_ModOpnImp& module_;
};

}  // namespace velk
