// A message that a user would have seen.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/desktop.h"

namespace velk {

struct Message {
  std::string prompt;
  std::int32_t style = styleOk;
  std::optional<std::string> caption;
  bool throughHost = false;  ///< shown by the host service, not by the platform's message box
};

using MessageHandler = std::function<void(const Message&)>;

}  // namespace velk
