#include "platform/headless/headless_desktop.h"

namespace velk {

HeadlessDesktop::HeadlessDesktop(std::string applicationFolder, std::function<Date()> clock,
                                 MessageHandler messages)
    : folder_(std::move(applicationFolder)),
      clock_(std::move(clock)),
      messages_(std::move(messages)) {}

std::int32_t HeadlessDesktop::messageBox(std::string_view prompt, std::int32_t style,
                                         std::optional<std::string_view> caption) {
  messages_({std::string(prompt), style, std::optional<std::string>(caption), false});
  return answerOk;
}

}  // namespace velk
