#include "platform/headless/headless_host_service.h"

namespace velk {

Value HeadlessHostService::messageBox(std::string_view prompt, std::int32_t style,
                                      std::optional<std::string_view> caption) {
  messages_({std::string(prompt), style, std::optional<std::string>(caption), true});
  return answerOk;
}

}  // namespace velk
