// The fonts of one screen, made when first asked for.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace velk {

class Fonts {
 public:
  static constexpr std::string_view standard = "Arial";

  Fonts() = default;
  ~Fonts();
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;

  /// Lives as long as this object.
  HFONT get(std::string_view name = standard, bool bold = false);

 private:
  std::map<std::pair<std::string, bool>, HFONT> made_;
};

}  // namespace velk
