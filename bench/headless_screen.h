// An import screen, opened as the runner opens it: without a window.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "component/Velk_ClsOpnImp.h"
#include "mapping/import_screen.h"
#include "platform/headless/headless_desktop.h"
#include "platform/headless/headless_host_service.h"
#include "platform/native/native_clock.h"
#include "platform/native/native_files.h"
#include "shared/Velk_ModOpnImp.h"
#include "ui/headless/headless_shell.h"

namespace velk::bench {

class HeadlessScreen {
 public:
  using EntryPoint = decltype(&Velk_ClsOpnImp::ImportCustomerOpening);

  /// `folder` takes the error log unless `log` is given. A null connection fails every query.
  HeadlessScreen(std::string folder, std::shared_ptr<Connection> connection,
                 MessageHandler messages, ErrorLog* log = nullptr,
                 EntryPoint open = &Velk_ClsOpnImp::ImportCustomerOpening)
      : messages_(std::move(messages)),
        desktop_(std::move(folder), localNow, messages_),
        module_(
            {files_, desktop_, shell_, CodePage::windows1252(), [this] { return service(); }, {}},
            log) {
    Velk_ClsOpnImp component(module_);
    (component.*open)(connection, nullptr);
  }

  ImportScreen& form() { return dynamic_cast<ImportScreen&>(*shell_.open().front()); }

  void browse(std::string path) {
    desktop_.chooseFile(std::move(path));
    form().CmdBrowse.userClick();
  }

 private:
  std::shared_ptr<HostService> service() {
    return std::make_shared<HeadlessHostService>(messages_);
  }

  MessageHandler messages_;
  NativeFileSystem files_;
  HeadlessDesktop desktop_;
  HeadlessShell shell_;
  Velk_ModOpnImp module_;
};

}  // namespace velk::bench
