#include "platform/host_service.h"

#include "base/errors.h"

namespace velk {

Value PlainHostService::caption(std::string_view, std::string_view, std::string_view key) {
  return std::string(key);
}

std::string PlainHostService::captionText(std::string_view, std::string_view,
                                          std::string_view key) {
  return std::string(key);
}

std::string PlainHostService::messageText(std::string_view text, std::span<const Value>) {
  return std::string(text);
}

std::shared_ptr<HostMainWindow> PlainHostService::mainWindow() {
  throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
}

}  // namespace velk
