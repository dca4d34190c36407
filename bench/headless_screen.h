// The customer opening balance screen, opened as the runner opens it: without a window.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "component/Velk_ClsOpnImp.h"
#include "mapping/Velk_frmCustOpn_OpnImp.h"
#include "platform/headless/headless.h"
#include "platform/native/native_clock.h"
#include "platform/native/native_files.h"
#include "shared/Velk_ModOpnImp.h"

namespace velk::bench {

class HeadlessScreen {
 public:
  /// `folder` takes the error log unless `log` is given. A null connection fails every query.
  HeadlessScreen(std::string folder, std::shared_ptr<Connection> connection,
                 MessageHandler messages, ErrorLog* log = nullptr)
      : messages_(std::move(messages)),
        desktop_(std::move(folder), localNow, messages_),
        module_({files_, desktop_, shell_, CodePage::windows1252(), [this] { return service(); }},
                log) {
    Velk_ClsOpnImp(module_).ImportCustomerOpening(connection, nullptr);
  }

  Velk_frmCustOpn_OpnImp& form() {
    return dynamic_cast<Velk_frmCustOpn_OpnImp&>(*shell_.open().front());
  }

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
