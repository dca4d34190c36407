#include "platform/headless/headless.h"

#include <utility>

namespace velk {

namespace {

Message makeMessage(std::string_view prompt, std::int32_t style,
                    std::optional<std::string_view> caption, bool throughHost) {
  Message message;
  message.prompt = prompt;
  message.style = style;
  if (caption) message.caption = std::string(*caption);
  message.throughHost = throughHost;
  return message;
}

}  // namespace

HeadlessDesktop::HeadlessDesktop(std::string applicationFolder, std::function<Date()> clock,
                                 MessageHandler messages)
    : folder_(std::move(applicationFolder)),
      clock_(std::move(clock)),
      messages_(std::move(messages)) {}

std::int32_t HeadlessDesktop::messageBox(std::string_view prompt, std::int32_t style,
                                         std::optional<std::string_view> caption) {
  messages_(makeMessage(prompt, style, caption, false));
  return answerOk;
}

Value HeadlessHostService::messageBox(std::string_view prompt, std::int32_t style,
                                      std::optional<std::string_view> caption) {
  messages_(makeMessage(prompt, style, caption, true));
  return answerOk;
}

void HeadlessShell::closed(Form& form) noexcept {
  std::erase_if(open_, [&](const auto& open) { return open.get() == &form; });
}

Menu* HeadlessShell::popup(Form& form, Menu& menu) {
  return onPopup ? onPopup(form, menu) : nullptr;
}

}  // namespace velk
