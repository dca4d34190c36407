#include "ui/property.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace velk {

namespace {

// In the order of the enumeration, up to the last one that a bag can contain.
constexpr auto names = std::to_array<std::string_view>({"Name",
                                                        "Caption",
                                                        "Text",
                                                        "Value",
                                                        "Enabled",
                                                        "Visible",
                                                        "Left",
                                                        "Top",
                                                        "Width",
                                                        "Height",
                                                        "BackColor",
                                                        "ForeColor",
                                                        "CalendarBackColor",
                                                        "CalendarForeColor",
                                                        "FontName",
                                                        "ListIndex",
                                                        "ScrollLeft",
                                                        "DialogTitle",
                                                        "Filter",
                                                        "FilterIndex",
                                                        "InitDir",
                                                        "FileName",
                                                        "CancelError",
                                                        "WindowState",
                                                        "hWnd"});
static_assert(names.size() == static_cast<std::size_t>(Property::hWnd) + 1);

}  // namespace

std::optional<Property> propertyNamed(std::string_view name) {
  const auto found = std::ranges::find_if(
      names, [&](std::string_view known) { return equalsIgnoringCase(known, name); });
  if (found == names.end()) return std::nullopt;
  return static_cast<Property>(found - names.begin());
}

}  // namespace velk
