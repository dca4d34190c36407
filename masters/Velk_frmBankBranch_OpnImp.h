// The master data screen: banks and branches, vendors, salesmen.
//
// One list of fields a type; choosing a type drops the file, its preview and the mapping. Banks,
// branches and vendors come from comma-separated files, salesmen from a workbook.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "mapping/import_screen.h"
#include "shared/record_reader.h"

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

  // Banks and branches

  void ImportBankBranch();
  /// Both values are changed in place: trimmed, their single quotes doubled.
  void ImportBank(std::string& BankCode, std::string& BankName);
  /// The values are trimmed in place; the bank's name is not used.
  void ImportBranch(std::string& BankCode, const std::string& BankName, std::string& BranchCode,
                    std::string& BranchName);

  // Vendors

  struct VendorRecord {
    std::string code;
    std::string name;
    std::string address;
    std::string phone;
    std::string contactPerson;
    std::string locality;
    std::string saleType;
    std::string tngst;
    std::string cst;
    std::string panNumber;
  };
  void ImportVendorMaster();
  /// Code and name are trimmed in place.
  void ImportVendor(VendorRecord& vendor);

  // Salesmen: not built yet, see salesman.cpp.

  /// Shows a workbook's rows in the preview. False: there is nothing to import.
  bool ImportExcelData(std::string_view fileName);
  void ImportSalesmanMaster();
  void cmdExport_Click();

 protected:
  void setUp(std::shared_ptr<Connection> myConn) override;
  void setUpDialog() override;
  bool loadPreview() override;
  Bounds keptBounds(WindowState state) override;
  void cmdImport_Click() override;

 private:
  using PostRecord = void (Velk_frmBankBranch_OpnImp::*)(std::size_t row);

  void Form_Load();
  void cboType_Click();

  /// The import of a comma-separated file of the current type: checks the file's columns and the
  /// mandatory fields, then posts each record.
  void importFile(PostRecord post);
  bool hasColumnsOfType(const RecordReader& reader) const;
  bool mandatoryFieldsAreMapped();
  /// A cell's text as imports read it: trimmed, then unquoted.
  std::string value(std::size_t row, std::size_t field);
  /// Calls a procedure, whatever becomes of it.
  void call(std::string_view procedure, std::span<const ProcedureParameter> parameters);

  void postBankAndBranch(std::size_t row);
  void postVendor(std::size_t row);

  bool importCompleted_ = false;
  std::shared_ptr<Recordset> result_;  // of the last call; nothing reads it
};

}  // namespace velk
