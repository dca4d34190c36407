// A host's service without a host: messages go to a handler.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/headless/message.h"
#include "platform/host_service.h"

namespace velk {

class HeadlessHostService final : public PlainHostService {
 public:
  explicit HeadlessHostService(MessageHandler messages) : messages_(std::move(messages)) {}

  Value messageBox(std::string_view prompt, std::int32_t style,
                   std::optional<std::string_view> caption) override {
    messages_({std::string(prompt), style, std::optional<std::string>(caption), true});
    return answerOk;
  }

 private:
  MessageHandler messages_;
};

}  // namespace velk
