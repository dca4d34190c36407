// One import screen without a window, driven as a user drives it: browse, view, map, import.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/records/workbook_records.h"
#include "component/Velk_ClsOpnImp.h"
#include "platform/headless/headless_desktop.h"
#include "platform/native/native_files.h"
#include "ui/headless/headless_shell.h"

namespace velk {

struct SessionSetup {
  std::string applicationFolder;  ///< without a separator at its end
  std::function<Date()> clock;
  MessageHandler showMessage;
  bool logToFile = true;                      ///< false: the error log stays in memory
  FileSystem* files = nullptr;                ///< that outlive the session; null: the machine's own
  const WorkbookRecords* workbook = nullptr;  ///< as AnySpreadsheet has it
};

class ScreenSession {
 public:
  /// The recorder has to live as long.
  ScreenSession(Recorder& recorder, const SessionSetup& setup);
  ~ScreenSession() { recorder_.endSession(); }
  ScreenSession(const ScreenSession&) = delete;
  ScreenSession& operator=(const ScreenSession&) = delete;

  /// Opens the screen through the component's entry point. Raises Refused when it does not appear.
  ImportScreen& open(const ImportKind& kind, const std::shared_ptr<Connection>& connection);
  ImportScreen& screen() const { return *screen_; }

  /// Chooses the file and views it. False when the screen does not offer to import it.
  bool view(const std::string& path);
  /// Presses Import. May throw RunEnded.
  EventResult import() { return screen_->cmdImport.userClick(); }

  /// Presses the master screen's Export with the file chosen to save to. May throw RunEnded.
  EventResult exportTo(const std::string& path);
  std::string errorLogPath() const { return module_.errorLogPath(); }

 private:
  Recorder& recorder_;
  NativeFileSystem machineFiles_;
  FileSystem& files_;
  HeadlessDesktop desktop_;
  HeadlessShell shell_;
  MessageHandler messages_;
  Platform platform_;
  NumberedFiles logFiles_;
  FileErrorLog logFile_;
  Velk_ModOpnImp module_;
  Velk_ClsOpnImp component_;
  std::shared_ptr<ImportScreen> screen_;
};

}  // namespace velk
