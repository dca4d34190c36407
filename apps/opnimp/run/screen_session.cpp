#include "apps/opnimp/run/screen_session.h"

#include <utility>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/records/any_spreadsheet.h"
#include "platform/headless/headless_host_service.h"

namespace velk {

// The code page is the same on every machine, so that a file means the same everywhere.
ScreenSession::ScreenSession(Recorder& recorder, const SessionSetup& setup)
    : recorder_(recorder),
      files_(setup.files == nullptr ? machineFiles_ : *setup.files),
      desktop_(setup.applicationFolder, setup.clock, recorder.messages(setup.showMessage)),
      messages_(recorder.messages(setup.showMessage)),
      platform_{
          files_,
          desktop_,
          shell_,
          CodePage::windows1252(),
          [this] { return std::make_shared<HeadlessHostService>(messages_); },
          [this, read = setup.workbook] { return std::make_unique<AnySpreadsheet>(files_, read); }},
      logFiles_(files_, CodePage::windows1252()),
      logFile_(logFiles_, desktop_),
      module_(platform_, &recorder.log(setup.logToFile ? &logFile_ : nullptr)),
      component_(module_) {}

ImportScreen& ScreenSession::open(const ImportKind& kind,
                                  const std::shared_ptr<Connection>& connection) {
  (component_.*kind.open)(connection, nullptr);
  if (shell_.open().empty()) throw Refused("the import screen did not open");
  screen_ = std::dynamic_pointer_cast<ImportScreen>(shell_.open().back());
  if (screen_ == nullptr) throw Refused("what opened is no import screen");
  // One screen serves all master data, so that its type has to be chosen first, as a user does.
  if (kind.type) {
    auto& master = dynamic_cast<Velk_frmBankBranch_OpnImp&>(*screen_);
    master.cboType.userChoose(static_cast<int>(*kind.type));
  }
  recorder_.watch(*screen_);
  return *screen_;
}

bool ScreenSession::view(const std::string& path) {
  desktop_.chooseFile(path);
  return screen_->CmdBrowse.userClick() == EventResult::Handled &&
         screen_->cmdview.userClick() == EventResult::Handled && screen_->cmdImport.enabled();
}

EventResult ScreenSession::exportTo(const std::string& path) {
  desktop_.chooseFile(path);
  return dynamic_cast<Velk_frmBankBranch_OpnImp&>(*screen_).cmdExport.userClick();
}

}  // namespace velk
