// The master data screen: banks and branches, vendors, salesmen.
//
// One list of fields a type; choosing a type drops the file, its preview and the mapping. Banks,
// branches and vendors come from comma-separated files, salesmen from a workbook. What an import
// does is the matter of a class of its own: bank_branch_import, vendor_import, salesman_import,
// salesman_export, ds_type_rules.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "mapping/import_screen.h"
#include "masters/bank_branch_import.h"
#include "masters/ds_type_rules.h"
#include "masters/salesman_export.h"
#include "masters/salesman_import.h"
#include "masters/vendor_import.h"

namespace velk {

class Velk_frmBankBranch_OpnImp final : public ImportScreen {
 public:
  /// By position in cboType.
  enum class Type { BankBranch, Vendor, Salesman };

  explicit Velk_frmBankBranch_OpnImp(Velk_ModOpnImp& module);

  CommandButton cmdExport;
  ComboBox cboType;
  ListView& lstCust = mappingList;

  Type type() const { return static_cast<Type>(cboType.index()); }
  /// Gives the mapping list the fields of the current type, and the screen its caption.
  void initListView();

  // The routines of the imports, by the names that hosts and records of the system use for them.
  // Each type's class says what they do.
  void ImportBankBranch() { importCompleted_ = banks_.run(); }
  void ImportBank(std::string& BankCode, std::string& BankName) {
    banks_.ImportBank(BankCode, BankName);
  }
  void ImportBranch(std::string& BankCode, const std::string& BankName, std::string& BranchCode,
                    std::string& BranchName) {
    banks_.ImportBranch(BankCode, BankName, BranchCode, BranchName);
  }
  void ImportVendorMaster() { importCompleted_ = vendors_.run(); }
  void ImportVendor(VendorRecord& vendor) { vendors_.ImportVendor(vendor); }
  bool ImportExcelData(std::string_view fileName, std::string& remarks) {
    return salesmen_.ImportExcelData(fileName, remarks);
  }
  void ImportSalesmanMaster() { importCompleted_ = salesmen_.ImportSalesmanMaster(); }
  void ImportSalesman(const std::string& name, const std::string& address,
                      const std::string& residentialNumber, const std::string& mobileNumber,
                      const std::string& extra, const std::string& dsType,
                      const std::string& handheld) {
    salesmen_.ImportSalesman(name, address, residentialNumber, mobileNumber, extra, dsType,
                             handheld);
  }
  void cmdExport_Click() { export_.cmdExport_Click(); }
  bool ExportToExcel(std::string_view fileName) { return export_.ExportToExcel(fileName); }
  bool IsFileInUse(std::string_view fileName) { return export_.IsFileInUse(fileName); }
  /// ChkForValidDSTypeName, CheckForDefaultVal, IsvalidateDSType, FilterAlphaNumeric, and what the
  /// last import found: NotDefaultList, NotDefaultCount, NotDefaultFound.
  DsTypeRules& dsTypes() { return dsTypes_; }

 protected:
  void setUp(std::shared_ptr<Connection> myConn) override;
  void setUpDialog() override;
  bool loadPreview() override;
  Bounds keptBounds(WindowState state) override;
  void cmdImport_Click() override;

 private:
  void Form_Load();
  void cboType_Click();

  BankBranchImport banks_{*this};
  VendorImport vendors_{*this};
  DsTypeRules dsTypes_{*this};
  SalesmanImport salesmen_{*this, dsTypes_};
  SalesmanExport export_{*this};
  bool importCompleted_ = false;  // by the last run
};

}  // namespace velk
