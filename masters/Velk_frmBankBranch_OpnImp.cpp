#include "masters/Velk_frmBankBranch_OpnImp.h"

#include <array>
#include <utility>

#include "base/text.h"

namespace velk {

namespace {

constexpr int bankWidth = 2805;
constexpr std::array<TargetField, 4> bankBranchFields{{
    {"Bank Code", bankWidth, "bank code", true, true},
    {"Bank Name", bankWidth, "bank name", true, true},
    {"Branch Code", bankWidth, "branch code", true, true},
    {"Branch Name", bankWidth, "branch name", true, true},
}};

constexpr int vendorWidth = 1245;
constexpr std::array<TargetField, 10> vendorFields{{
    {"Vendor Code", vendorWidth, "vendor code", true, true},
    {"Vendor Name", vendorWidth, "vendor name", true, true},
    {"Address", vendorWidth, "address", false, true},
    {"Phone", vendorWidth, "phone", false, true},
    {"Contact Person", vendorWidth, "contact person", false, true},
    {"Locality", vendorWidth, "locality", false, true},
    {"Sale Type", vendorWidth, "sale type", false, true},
    {"TNGST", vendorWidth, "tngst", false, true},
    {"CST", vendorWidth, "cst", false, true},
    // Mapped by its name although its first value is missing, intended.
    {"Pan Number", vendorWidth, "pan number", false, false},
}};

// The blanks in front of three titles are intended.
constexpr std::array<TargetField, 6> salesmanFields{{
    {"Salesman", ListView::defaultColumnWidth, "salesman"},
    {" Address", ListView::defaultColumnWidth, "address"},
    {" ResNumber", ListView::defaultColumnWidth, "resnumber"},
    {" MobNumber", ListView::defaultColumnWidth, "mobnumber"},
    {"DSType", ListView::defaultColumnWidth, "dstype"},
    {"HandHeld DS", ListView::defaultColumnWidth, "handheld ds"},
}};

struct MasterType {
  std::string_view name;
  std::span<const TargetField> fields;
  std::string_view dialogTitle;
  std::string_view dialogFilter;
  bool startsInApplicationFolder;
};

// "csv Files" and "csv files": intended.
constexpr std::array<MasterType, 3> types{{
    {"Bank & Branch", bankBranchFields, "BankBranch Import", "csv Files (*.csv)|*.csv", false},
    {"Vendor", vendorFields, "Vendor Import", "csv files (*.csv)|*.csv", false},
    {"Salesman", salesmanFields, "Salesman Import", "Excel Spreadsheets (*.xls)|*.xls", true},
}};

std::vector<std::string> typeNames() {
  std::vector<std::string> names;
  names.reserve(types.size());
  for (const MasterType& type : types) names.emplace_back(type.name);
  return names;
}

const MasterType& dataOf(Velk_frmBankBranch_OpnImp::Type type) {
  return types.at(static_cast<std::size_t>(type));
}

constexpr MappingRules rules{
    .selectFirst = "You have to select from list",
    .hasEmptyValue = "The Field contains Null Value.So Cannot be mapped",
    .firstCell = {.afterBrowse = true, .afterAutomaticMapping = true},
    .furtherCellSuffix = " ",  // "Not Yet " in all cells but the first, intended
};

}  // namespace

Velk_frmBankBranch_OpnImp::Velk_frmBankBranch_OpnImp(Velk_ModOpnImp& module)
    : ImportScreen(module, "Velk_frmBankBranch_OpnImp", "Import", "lstCust", rules),
      cmdExport(*this, nullptr, "cmdExport", {120, 7515, 1575, 390}, "&Export DS"),
      cboType(*this, &FraBrowse, "cboType", {240, 345, 2220, 330}, typeNames()) {
  arrange({&cmdExport, &FraBrowse, &cboType, &TxtFileName, &CmdBrowse, &cmdview, &FraData, &lv,
           &lstCust, &Label1, &Label2, &CmdClear, &cmdExit, &cmdImport, &CommonDialog1, &test,
           &subclr});
  TxtFileName.set(Property::Left, 2580);
  TxtFileName.set(Property::Width, 6180);
  FraData.set(Property::FontName, std::string("MS Sans Serif"));
  cmdExport.setVisible(false);
  cmdExport.onClick = [this] { cmdExport_Click(); };
  cboType.onClick = [this] { cboType_Click(); };
  Form_Load();
}

void Velk_frmBankBranch_OpnImp::Form_Load() {
  cboType.setIndex(0);
  initListView();
}

void Velk_frmBankBranch_OpnImp::initListView() {
  const MasterType& data = dataOf(type());
  set(Property::Caption, "Import - " + std::string(data.name));
  setFields(data.fields);
}

void Velk_frmBankBranch_OpnImp::setUp(std::shared_ptr<Connection> myConn) {
  keepConnection(std::move(myConn));
  InitLoadColors();
  paint();
  loadNotYetCaption();
  show();
  cboType.setFocus();
}

void Velk_frmBankBranch_OpnImp::cboType_Click() {
  trapRoutine("cboType_Click", [this] {
    initListView();
    emptyScreen();
    cmdExport.setVisible(type() == Type::Salesman);
  });
}

void Velk_frmBankBranch_OpnImp::setUpDialog() {
  const MasterType& data = dataOf(type());
  CommonDialog1.set(Property::DialogTitle, std::string(data.dialogTitle));
  CommonDialog1.set(Property::Filter, std::string(data.dialogFilter));
  CommonDialog1.set(Property::FilterIndex, 1);
  CommonDialog1.set(Property::InitDir,
                    data.startsInApplicationFolder ? desktop().applicationFolder() : "");
  CommonDialog1.set(Property::CancelError, flagTrue);
}

bool Velk_frmBankBranch_OpnImp::loadPreview() {
  if (type() != Type::Salesman) return ImportScreen::loadPreview();
  if (!ImportExcelData(trim(TxtFileName.value()))) return false;
  if (ChkForValidDSTypeName() != 0) return true;
  desktop().messageBox("DSCaption name mismatch", styleInformation, "Vorel");
  return false;
}

void Velk_frmBankBranch_OpnImp::cmdImport_Click() {
  switch (type()) {
    case Type::BankBranch:
      ImportBankBranch();
      break;
    case Type::Vendor:
      ImportVendorMaster();
      break;
    case Type::Salesman:
      ImportSalesmanMaster();
      break;
  }
  if (importCompleted_) emptyScreen();
}

Bounds Velk_frmBankBranch_OpnImp::keptBounds(WindowState state) {
  constexpr int maximisedListWidth = 11000;
  if (state != WindowState::Maximised) {
    return {number(Property::Left), number(Property::Top), fixedBounds.width, fixedBounds.height};
  }
  lstCust.set(Property::Width, maximisedListWidth);
  return fixedBounds;
}

}  // namespace velk
