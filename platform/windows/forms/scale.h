// Between the screens' measure, twips, and the display's pixels.
#pragma once

#include <windows.h>

#include "ui/form.h"

namespace velk {

class Scale {
 public:
  /// That of the primary display, as this process sees it.
  static Scale ofDisplay();

  int pixels(int twips) const { return MulDiv(twips, dotsPerInch_, twipsPerInch); }
  int twips(int pixels) const { return MulDiv(pixels, twipsPerInch, dotsPerInch_); }
  /// `known` when that is what is shown as `pixels`, so that nothing drifts by rounding.
  int twips(int pixels, int known) const {
    return this->pixels(known) == pixels ? known : twips(pixels);
  }
  RECT pixels(const Bounds& bounds) const {
    const int left = pixels(bounds.left);
    const int top = pixels(bounds.top);
    return {left, top, left + pixels(bounds.width), top + pixels(bounds.height)};
  }
  Bounds twips(const RECT& rectangle, const Bounds& known) const {
    return {.left = twips(rectangle.left, known.left),
            .top = twips(rectangle.top, known.top),
            .width = twips(rectangle.right - rectangle.left, known.width),
            .height = twips(rectangle.bottom - rectangle.top, known.height)};
  }

 private:
  static constexpr int twipsPerInch = 1440;
  explicit Scale(int dotsPerInch) : dotsPerInch_(dotsPerInch) {}
  int dotsPerInch_;
};

}  // namespace velk
