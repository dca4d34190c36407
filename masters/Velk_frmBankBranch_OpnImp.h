// The master data screen: banks and branches, vendors, salesmen.
//
// One list of fields a type; choosing a type drops the file, its preview and the mapping. Banks,
// branches and vendors come from comma-separated files, salesmen from a workbook.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "mapping/file_table.h"
#include "mapping/import_screen.h"
#include "platform/spreadsheet.h"
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

  // Salesmen

  /// Shows a workbook's rows in the preview. False: there is nothing to import, and the user knows
  /// why.
  bool ImportExcelData(std::string_view fileName);
  void ImportSalesmanMaster();
  /// Saves one salesman and his types. Errors are logged.
  void ImportSalesman(const std::string& name, const std::string& address,
                      const std::string& residentialNumber, const std::string& mobileNumber,
                      const std::string& extra, const std::string& dsType,
                      const std::string& handheld);
  /// Asks for a file and writes all salesmen to it.
  void cmdExport_Click();
  /// False: the workbook was not written; the log says why.
  bool ExportToExcel(std::string_view fileName);
  /// Whether the file can't be opened exclusively. Where there is none, an empty one is made.
  bool IsFileInUse(std::string_view fileName);

  // DS types: rules that errors never leave; they are logged.

  enum class DsTypeCheck : std::int16_t { Valid, NotFound, Inactive };
  /// 0: the database has another caption for DS types than this system; also when the check failed.
  std::int16_t ChkForValidDSTypeName();
  /// Whether a salesman may keep the type that he has; true when the check failed, intended.
  bool CheckForDefaultVal(std::string_view name, std::string_view existingValue);
  DsTypeCheck IsvalidateDSType(std::string_view value);
  /// Whether all characters are unaccented letters, digits, blanks or "&".
  static bool FilterAlphaNumeric(std::string_view text);

  /// Of the last import: the salesmen whose type is no default value, each behind a comma, every
  /// eleventh on a new line.
  std::string NotDefaultList;
  std::int32_t NotDefaultCount = 0;  ///< since the last new line
  bool NotDefaultFound = false;

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
  /// The first result with rows of a procedure; null when it failed.
  std::shared_ptr<Recordset> callForRows(std::string_view procedure, const Value& parameter);
  /// Calls a procedure, whatever becomes of it.
  void call(std::string_view procedure, std::span<const ProcedureParameter> parameters);

  void postBankAndBranch(std::size_t row);
  void postVendor(std::size_t row);

  std::optional<FileTable> readSalesmen(std::string_view fileName);
  bool postSalesman(std::size_t row);
  std::string refusal(std::string_view salesman, std::string_view dsType, std::string_view cell);
  void noteNotDefault(std::string_view name);
  std::optional<std::string> chooseExportFile();
  void writeWorkbook(std::string_view fileName);
  void removeMadeFile(std::string_view fileName);

  bool importCompleted_ = false;
  bool madeExportFile_ = false;            // by the in-use test
  std::array<std::string, 2> dsCaptions_;  // of the run's DS type and handheld columns
  std::shared_ptr<Recordset> result_;      // of the last call; nothing reads it
};

}  // namespace velk
