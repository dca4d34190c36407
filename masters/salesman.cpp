// Salesmen by workbook: NOT BUILT YET. The screen's calls end here and say so.
#include "masters/Velk_frmBankBranch_OpnImp.h"

namespace velk {

namespace {

void sayNotBuilt(const ImportScreen& screen) {
  screen.desktop().messageBox("Salesmen cannot be imported or exported yet.", styleInformation);
}

}  // namespace

bool Velk_frmBankBranch_OpnImp::ImportExcelData(std::string_view /*fileName*/) {
  sayNotBuilt(*this);
  return false;
}

void Velk_frmBankBranch_OpnImp::ImportSalesmanMaster() {
  importCompleted_ = false;
  sayNotBuilt(*this);
}

void Velk_frmBankBranch_OpnImp::cmdExport_Click() {
  sayNotBuilt(*this);
}

}  // namespace velk
