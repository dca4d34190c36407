#include "mapping/import_screen.h"

#include <cmath>
#include <utility>

#include "base/errors.h"
#include "base/text.h"

namespace velk {

ImportScreen::ImportScreen(Velk_ModOpnImp& module, std::string_view name, std::string_view caption,
                           std::string_view mappingListName, const MappingRules& rules)
    : Form(module.platform().shell, name, caption, fixedBounds),
      FraBrowse(*this, "FraBrowse", {120, 60, 11640, 900}, "Select the CSV file"),
      TxtFileName(*this, &FraBrowse, "TxtFileName", {240, 345, 8520, 330}),
      CmdBrowse(*this, &FraBrowse, "CmdBrowse", {8910, 315, 1215, 390}, "&Browse"),
      cmdview(*this, &FraBrowse, "cmdview", {10215, 315, 1215, 390}, "&View"),
      FraData(*this, "FraData", {120, 1020, 11640, 6360}, ""),
      Label2(*this, &FraData, "Label2", {240, 240, 3000, 255}, "CSV File Data"),
      lv(*this, &FraData, "lv", {240, 510, 11160, 2640}),
      Label1(*this, &FraData, "Label1", {240, 3270, 3000, 255}, "Mapped to"),
      mappingList(*this, &FraData, mappingListName, {240, 3540, 11160, 2640}),
      CmdClear(*this, nullptr, "CmdClear", {7920, 7515, 1215, 390}, "&Clear"),
      cmdImport(*this, nullptr, "cmdImport", {9225, 7515, 1215, 390}, "&Import"),
      cmdExit(*this, nullptr, "cmdExit", {10530, 7515, 1215, 390}, "C&lose"),
      CommonDialog1(*this, module.desktop(), "CommonDialog1"),
      test(*this, nullptr, "test", "Clear"),
      subclr(*this, &test, "subclr", "Clear"),
      module_(module),
      rules_(rules) {
  cmdview.setEnabled(false);
  cmdImport.setEnabled(false);
  test.setVisible(false);
  bindEvents();
  tellNextStep();
}

void ImportScreen::bindEvents() {
  CmdBrowse.onClick = [this] { CmdBrowse_Click(); };
  cmdview.onClick = [this] { cmdview_Click(); };
  CmdClear.onClick = [this] { CmdClear_Click(); };
  cmdImport.onClick = [this] {
    const WaitCursor wait(desktop());
    cmdImport_Click();
    run_.leaveRows();
    // A run that ended has disabled its button, and the focus went on to Close. After a refusal it
    // stays where the user has to correct something.
    if (!cmdImport.enabled()) TxtFileName.setFocus();
  };
  cmdExit.onClick = [this] { trapRoutine("cmdExit_Click", [this] { unload(); }); };
  lv.onColumnClick = [this](std::size_t column) { lv_ColumnClick(column); };
  mappingList.onColumnClick = [this](std::size_t column) { mappingList_ColumnClick(column); };
  mappingList.onMouseUp = [this](MouseButton button, int x) { mappingList_MouseUp(button, x); };
  subclr.onClick = [this] { subclr_Click(); };
}

// Set-up

// The hooks come first and last: hosts arrange the screen in the one, and count on it being
// complete in the other.
void ImportScreen::initForm(std::shared_ptr<Connection> myConn,
                            std::shared_ptr<const Picture> AppIcon) {
  trapRoutine("initForm", [&] {
    module_.hostService().screenStarting(*this);
    setIcon(std::move(AppIcon));
    setUp(std::move(myConn));
    module_.hostService().screenReady(*this, true);
  });
  acceptEvents();
}

void ImportScreen::setFields(std::span<const TargetField> fields) {
  fields_ = fields;
  mappingList.clearColumns();
  for (const TargetField& field : fields) mappingList.addColumn(field.title, field.width);
}

// A host that hands over no connection still gets its screen; only its queries fail.
void ImportScreen::keepConnection(std::shared_ptr<Connection> myConn) {
  connection_ = myConn != nullptr ? std::move(myConn) : std::make_shared<ClosedConnection>();
  command_ = connection_->newCommand();
}

void ImportScreen::loadNotYetCaption() {
  notYet_ = toText(module_.hostService().caption("Vorel", "Label", "Not Yet"));
}

namespace {

// Databases keep the 32 bits of a colour signed or not. A number that is wider is no colour.
std::int32_t toColor(double number) {
  constexpr double beyond = 4294967296.0;
  if (number <= -beyond / 2 - 1 || number >= beyond) return 0;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(std::llrint(number)));
}

}  // namespace

// The defaults come first, so that a query that fails still leaves a screen to paint.
void ImportScreen::InitLoadColors() {
  using namespace systemColor;
  backColors_ = {buttonFace,       buttonFace,       windowBackground,
                 windowBackground, windowBackground, windowBackground};
  foreColors_ = {buttonText, buttonText, windowText, windowText, windowText, windowText};
  trapRoutine("InitLoadColors", [this] {
    const auto rows = connection().Execute("Select * From ColorSettings");
    if (rows == nullptr || rows->State() != stateOpen) return;
    // A colour of 0 means "not chosen" to the application, so black cannot be chosen.
    const auto take = [](Value& color, const Value& field) {
      const double number = Velk_ModOpnImp::ValOrZero(std::string(trim(toText(field))));
      if (const std::int32_t chosen = toColor(number); chosen != 0) color = chosen;
    };
    for (std::size_t row = 0; !rows->isEOF(); ++row, rows->MoveNext()) {
      if (row >= backColors_.size()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
      take(backColors_[row], rows->field(1));
      take(foreColors_[row], rows->field(2));
    }
    rows->Close();
  });
}

// Window

void ImportScreen::Form_KeyDown(std::int16_t KeyCode, std::int16_t Shift) {
  constexpr std::int16_t emptyValue = 0;  // the comparison is with a value that is always empty
  constexpr std::int16_t keyF4 = 115;
  constexpr std::int16_t ctrlAlone = 2;
  trapRoutine("Form_KeyDown", [&] {
    if (KeyCode == emptyValue) module_.hostMainWindow().focusMainMenu(0);
    if (KeyCode == keyF4 && Shift == ctrlAlone) unload();
  });
}

// Back to the normal state first: a maximised window would not take another size.
void ImportScreen::Form_Resize() {
  trapRoutine("Form_Resize", [this] {
    const WindowState state = windowState();
    if (state == WindowState::Minimised) return;
    set(Property::WindowState, static_cast<std::int32_t>(WindowState::Normal));
    setBounds(keptBounds(state));
  });
}

// Runs

// The count is 16 bits wide on some screens, and adding 1 to the largest one overflows there as it
// does in the records of the system.
std::size_t ImportScreen::lastDataRow() const {
  if (recordCount_ >= rules_.largestRecordCount) throw RuntimeError(ErrorNumber::Overflow);
  return static_cast<std::size_t>(recordCount_) + 1;
}

void ImportScreen::emptyScreen() {
  TxtFileName.setValue("");
  mappingList.clearRows();
  forgetFile();
  cmdview.setEnabled(false);
}

// What the user mends by himself is no failure of the program.
void ImportScreen::tellStop(const RuntimeError& error) {
  const bool isFailure = !error.is(ErrorNumber::IndexOutOfBounds);
  desktop().messageBox(run_.stop(error), isFailure ? styleCritical : styleExclamation);
}

void ImportScreen::eventFailed(const RuntimeError& error) noexcept {
  try {
    module_.LogError(run_.stopText(error), std::to_string(error.number()));
    tellStop(error);
  } catch (...) {
    // There is no way left to tell the user, and the host has to live on.
  }
  run_.leaveRows();
}

}  // namespace velk
