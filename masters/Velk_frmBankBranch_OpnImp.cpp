#include "masters/Velk_frmBankBranch_OpnImp.h"

#include <array>
#include <utility>

#include "base/text.h"
#include "masters/salesman_workbook.h"

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
// "Contact Person" has to fit this width, in bold letters, too.
constexpr double vendorFontSize = 7.5;
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
    // Mapped by its name although its first value is missing: many vendors have no such number.
    {"Pan Number", vendorWidth, "pan number", false, false},
}};

// Three titles begin with a blank, as the application has them in its own lists.
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
  double fontSize;  ///< of the mapping list, in points
  std::string_view dialogTitle;
  std::string_view dialogFilter;
  bool startsInApplicationFolder;
};

// The two filters differ in one letter, as the dialogs always have.
constexpr std::array<MasterType, 3> types{{
    {"Bank & Branch", bankBranchFields, 9, "BankBranch Import", "csv Files (*.csv)|*.csv", false},
    {"Vendor", vendorFields, vendorFontSize, "Vendor Import", "csv files (*.csv)|*.csv", false},
    {"Salesman", salesmanFields, 9, "Salesman Import", workbookFilter, true},
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
    .furtherCellSuffix = " ",  // so that these cells differ from a file column titled so
};

}  // namespace

// The controls are arranged in the order in which hosts count them, which is not that of the
// opening screens.
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
  mappingList.set(Property::FontSize, data.fontSize);
  setFields(data.fields);
}

// Painted before it is shown, unlike the opening screens; the focus can only be set on a window.
void Velk_frmBankBranch_OpnImp::setUp(std::shared_ptr<Connection> myConn) {
  keepConnection(std::move(myConn));
  InitLoadColors();
  paint();
  loadNotYetCaption();
  show();
  cboType.setFocus();
}

// Another type has other fields: the file, its preview and the mapping mean nothing to it.
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
  std::string remarks;
  if (!ImportExcelData(trim(TxtFileName.value()), remarks)) return false;
  if (dsTypes_.ChkForValidDSTypeName() != 0) {
    salesmen_.tellRemarks(remarks);  // only now: a View that is refused says why, and no more
    return true;
  }
  constexpr std::string_view message = "DSCaption name mismatch";
  desktop().messageBox(message, styleInformation, "Vorel");
  // The user is told the same when the database could not be asked; who listens can tell the two.
  const bool asked = module().lastErrorNumber() == 0;
  run().refuse({asked ? Reason::CaptionMismatch : Reason::CheckFailed, std::nullopt, {}},
               asked ? message : module().lastErrorLine());
  return false;
}

void Velk_frmBankBranch_OpnImp::cmdImport_Click() {
  importCompleted_ = false;
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

// Only a maximised window moves to the corner; a normal one stays where the user put it.
Bounds Velk_frmBankBranch_OpnImp::keptBounds(WindowState state) {
  constexpr int maximisedListWidth = 11000;
  if (state != WindowState::Maximised) {
    return {number(Property::Left), number(Property::Top), fixedBounds.width, fixedBounds.height};
  }
  lstCust.set(Property::Width, maximisedListWidth);
  return fixedBounds;
}

}  // namespace velk
