#include "component/Velk_ClsOpnImp.h"

#include "mapping/Velk_frmCustOpn_OpnImp.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "opening/Velk_frmVenOpn_OpnImp.h"
#include "opening/opening_import.h"

namespace velk {

// A screen is not kept here: once it is open, its window keeps it until it is closed.

void Velk_ClsOpnImp::ImportCustomerOpening(const std::shared_ptr<Connection>& myConn,
                                           const std::shared_ptr<const Picture>& AppIcon) {
  std::make_shared<Velk_frmCustOpn_OpnImp>(module_,
                                           std::make_unique<OpeningImportButton>(customerOpening))
      ->initForm(myConn, AppIcon);
}

void Velk_ClsOpnImp::ImportVendorOpening(const std::shared_ptr<Connection>& myConn,
                                         const std::shared_ptr<const Picture>& AppIcon) {
  std::make_shared<Velk_frmVenOpn_OpnImp>(module_,
                                          std::make_unique<OpeningImportButton>(vendorOpening))
      ->initForm(myConn, AppIcon);
}

void Velk_ClsOpnImp::ImportBankBranchOpening(const std::shared_ptr<Connection>& myConn,
                                             const std::shared_ptr<const Picture>& AppIcon) {
  std::make_shared<Velk_frmBankBranch_OpnImp>(module_)->initForm(myConn, AppIcon);
}

}  // namespace velk
