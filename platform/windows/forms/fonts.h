// The fonts of one screen, made when first asked for.
#pragma once

#include <map>
#include <string>
#include <tuple>

#include "platform/windows/handles.h"
#include "ui/control.h"

namespace velk {

class Fonts {
 public:
  /// That of a control's texts, or its bold form. Lives as long as this object.
  HFONT of(const Control& control, bool bold = false);

 private:
  std::map<std::tuple<std::string, int, bool>, UniqueFont> made_;
};

}  // namespace velk
