#include "component/com/apartment.h"

#include <Velk_OpnImp_com.h>

#include <map>
#include <mutex>

#include "base/errors.h"
#include "component/com/server.h"
#include "base/errors.h"
#include "component/com/server.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/com_host_service.h"
#include "platform/windows/excel_spreadsheet.h"
#include "platform/windows/windows_text.h"

namespace velk {

namespace {

/// Answers where no host service is registered.
class DesktopHostService final : public PlainHostService {
 public:
  explicit DesktopHostService(Desktop& desktop) : desktop_(desktop) {}

  Value messageBox(std::string_view prompt, std::int32_t style,
                   std::optional<std::string_view> caption) override {
    return desktop_.messageBox(prompt, style, caption);
  }

 private:
  Desktop& desktop_;
};

}  // namespace

Apartment::Thread::Thread() : number(GetCurrentThreadId()) {
  FILETIME created{};
  // Not wanted, but the call demands a place for each time.
  FILETIME others{};
  GetThreadTimes(GetCurrentThread(), &created, &others, &others, &others);
  started = std::uint64_t{created.dwHighDateTime} << 32 | created.dwLowDateTime;
}

// Objects are created in single-threaded apartments only, so a thread is an apartment.
std::shared_ptr<Apartment> Apartment::current() {
  static std::mutex mutex;
  // Weak: an apartment ends with the last of its objects and screens.
  static std::map<Thread, std::weak_ptr<Apartment>> apartments;
  const std::scoped_lock lock(mutex);
  // Apartments do not remove their own entries.
  std::erase_if(apartments, [](const auto& entry) { return entry.second.expired(); });
  std::weak_ptr<Apartment>& entry = apartments[Thread()];
  std::shared_ptr<Apartment> apartment = entry.lock();
  if (apartment == nullptr) entry = apartment = std::make_shared<Apartment>();
  return apartment;
}

Apartment::Apartment()
    : codePage_(activeCodePage()),
      module_({files_, desktop_, shell_, codePage_, [this] { return createHostService(); },
               [this] { return createSpreadsheet(); }}) {}

// The module keeps what it got, so the line is written once.
std::shared_ptr<HostService> Apartment::createHostService() {
  if (auto service = createComHostService()) return service;
  module_.WriteErrorLog("The host's service object is not registered; captions are their keys");
  return std::make_shared<DesktopHostService>(desktop_);
}

std::unique_ptr<Spreadsheet> Apartment::createSpreadsheet() {
  if (auto installed = createExcelSpreadsheet()) return installed;
  return std::make_unique<XlsSpreadsheet>(files_);
}

const ComPtr<ITypeInfo>& Apartment::typeInfo() {
  if (!typeInfo_) {
    ComPtr<ITypeLib> library;
    // From the DLL's own file, so that it works without a registration, too.
    check(LoadTypeLibEx(serverPath().c_str(), REGKIND_NONE, library.GetAddressOf()));
    check(library->GetTypeInfoOfGuid(__uuidof(_Velk_ClsOpnImp), typeInfo_.GetAddressOf()));
  }
  return typeInfo_;
}

}  // namespace velk
