// Painting a screen by the type names of its controls.
#include <algorithm>

#include "shared/Velk_ModOpnImp.h"
#include "ui/control.h"

namespace velk {

namespace {

// What is not here keeps its colours: buttons, menus, dialogs, and of a date picker all but its
// calendar.
struct Painting {
  std::string_view typeName;
  std::size_t index;  // into both colour arrays
  Property back = Property::BackColor;
  Property fore = Property::ForeColor;
};

constexpr Painting paintings[] = {
    {"Label", 1},
    {"CheckBox", 1},
    {"OptionButton", 1},
    {"TextBox", 2},
    {"ComboBox", 2},
    {"ListView", 2},
    {"DTPicker", 2, Property::CalendarBackColor, Property::CalendarForeColor},
    // The form's own colours, so that a frame looks like a part of it.
    {"Frame", 0},
};

const Value& colorAt(std::span<const Value> colors, std::size_t index) {
  if (index >= colors.size()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
  return colors[index];
}

}  // namespace

void Velk_ModOpnImp::SetColors(Form& screen, std::span<const Value> back,
                               std::span<const Value> fore) {
  screen.set(Property::BackColor, colorAt(back, 0));
  for (Control* control : screen.controls()) {
    const auto painting = std::ranges::find(paintings, control->typeName(), &Painting::typeName);
    if (painting == std::ranges::end(paintings)) continue;
    control->set(painting->back, colorAt(back, painting->index));
    control->set(painting->fore, colorAt(fore, painting->index));
  }
}

}  // namespace velk
