// Painting a screen by the type names of its controls.
#include <algorithm>
#include <array>

#include "shared/Velk_ModOpnImp.h"
#include "ui/form.h"

namespace velk {

namespace {

struct Painting {
  std::string_view typeName;
  std::size_t index;  // into both colour arrays
  std::string_view backProperty;
  std::string_view foreProperty;
};

constexpr std::array<Painting, 8> paintings{{
    {"Label", 1, "BackColor", "ForeColor"},
    {"CheckBox", 1, "BackColor", "ForeColor"},
    {"OptionButton", 1, "BackColor", "ForeColor"},
    {"TextBox", 2, "BackColor", "ForeColor"},
    {"ComboBox", 2, "BackColor", "ForeColor"},
    {"ListView", 2, "BackColor", "ForeColor"},
    {"DTPicker", 2, "CalendarBackColor", "CalendarForeColor"},
    {"Frame", 0, "BackColor", "ForeColor"},
}};

const Value& colorAt(std::span<const Value> colors, std::size_t index) {
  if (index >= colors.size()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
  return colors[index];
}

}  // namespace

void Velk_ModOpnImp::SetColors(Form& screen, std::span<const Value> back,
                               std::span<const Value> fore) {
  screen.set("BackColor", colorAt(back, 0));
  for (Control* control : screen.controls()) {
    const auto painting = std::ranges::find(paintings, control->typeName(), &Painting::typeName);
    if (painting == paintings.end()) continue;
    control->set(painting->backProperty, colorAt(back, painting->index));
    control->set(painting->foreProperty, colorAt(fore, painting->index));
  }
}

}  // namespace velk
