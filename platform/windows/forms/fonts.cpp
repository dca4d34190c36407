#include "platform/windows/forms/fonts.h"

#include "platform/windows/forms/scale.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr int heightInTwips = 180;  // 9 points

}  // namespace

HFONT Fonts::get(std::string_view name, bool bold) {
  UniqueFont& font = made_[{std::string(name), bold}];
  if (!font) {
    // A negative height is that of the letters, without the space between lines.
    font.reset(CreateFontW(-Scale::ofDisplay().pixels(heightInTwips), 0, 0, 0,
                           bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                           OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                           DEFAULT_PITCH | FF_DONTCARE, toWide(name).c_str()));
  }
  return font.get();
}

}  // namespace velk
