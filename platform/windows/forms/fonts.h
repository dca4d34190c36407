// The fonts of one screen, made when first asked for.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "platform/windows/handles.h"

namespace velk {

class Fonts {
 public:
  static constexpr std::string_view standard = "Arial";

  /// Lives as long as this object.
  HFONT get(std::string_view name, bool bold = false);

 private:
  std::map<std::pair<std::string, bool>, UniqueFont> made_;
};

}  // namespace velk
