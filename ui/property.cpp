#include "ui/property.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace velk {

namespace {

// In the order of the enumeration, up to the last one that a bag can contain.
constexpr std::string_view names[] = {"Name",
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
                                      "FontSize",
                                      "FontBold",
                                      "Tag",
                                      "ToolTipText",
                                      "ListIndex",
                                      "ScrollLeft",
                                      "DialogTitle",
                                      "Filter",
                                      "FilterIndex",
                                      "InitDir",
                                      "FileName",
                                      "CancelError",
                                      "WindowState",
                                      "hWnd"};
static_assert(std::size(names) == static_cast<std::size_t>(Property::hWnd) + 1);

}  // namespace

std::optional<Property> propertyNamed(std::string_view name) {
  // Automation names have no letter case.
  const auto* found = std::ranges::find_if(
      names, [&](std::string_view known) { return equalsIgnoringCase(known, name); });
  if (found == std::end(names)) return std::nullopt;
  return static_cast<Property>(found - names);
}

bool isFlag(Property property) {
  constexpr Property flags[] = {Property::Enabled, Property::Visible, Property::FontBold,
                                Property::CancelError};
  return std::ranges::find(flags, property) != std::end(flags);
}

}  // namespace velk
