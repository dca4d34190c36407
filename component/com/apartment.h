// What the component keeps for one apartment of the host: the platform and the shared module.
#pragma once

#include <ole2.h>

#include <compare>
#include <cstdint>
#include <memory>

#include "platform/windows/com_pointer.h"
#include "platform/windows/forms/window_shell.h"
#include "platform/windows/module_lock.h"
#include "platform/windows/windows_desktop.h"
#include "platform/windows/windows_files.h"
#include "shared/Velk_ModOpnImp.h"

namespace velk {

class Apartment : public std::enable_shared_from_this<Apartment> {
 public:
  /// That of the calling thread, made when there is none. It lives as long as someone holds it: the
  /// objects and screens of the apartment.
  static std::shared_ptr<Apartment> current();

  Apartment();
  /// False in a call that did not come the way that COM provides between threads.
  bool isCurrent() const { return thread_ == Thread(); }
  Velk_ModOpnImp& module() { return module_; }
  /// The public class's interface as the type library describes it.
  const ComPtr<ITypeInfo>& typeInfo();

 private:
  /// The calling thread. Its number alone would not do: it is given away anew when a thread has
  /// ended, and with it what that thread left open.
  struct Thread {
    Thread();
    auto operator<=>(const Thread&) const = default;

    DWORD number;
    std::uint64_t started = 0;
  };

  std::shared_ptr<HostService> createHostService();
  /// The installed spreadsheet application, or the system's own reader and writer.
  std::unique_ptr<Spreadsheet> createSpreadsheet();

  ModuleLock lock_;
  Thread thread_;
  WindowsFileSystem files_;
  WindowsDesktop desktop_;
  WindowShell shell_{[this] { return shared_from_this(); }};
  CodePage codePage_;
  Velk_ModOpnImp module_;
  ComPtr<ITypeInfo> typeInfo_;
};

}  // namespace velk
