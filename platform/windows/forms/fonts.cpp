#include "platform/windows/forms/fonts.h"

#include <algorithm>
#include <cmath>

#include "platform/windows/scale.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr double smallestSize = 1;
constexpr double largestSize = 200;  // that code sets more is a mistake

}  // namespace

HFONT Fonts::of(const Control& control, bool bold) {
  constexpr int twipsPerPoint = 20;
  const std::string& name = control.text(Property::FontName);
  const double points = toDouble(control.get(Property::FontSize));
  bold = bold || control.flag(Property::FontBold);
  const int twips =
      static_cast<int>(std::lround(std::clamp(points, smallestSize, largestSize) * twipsPerPoint));
  UniqueFont& font = made_[{name, twips, bold}];
  if (!font) {
    // A negative height is that of the letters, without the space between lines.
    font.reset(CreateFontW(-Scale::ofDisplay().pixels(twips), 0, 0, 0, bold ? FW_BOLD : FW_NORMAL,
                           FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                           CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE,
                           toWide(name).c_str()));
  }
  return font.get();
}

}  // namespace velk
