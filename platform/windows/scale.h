// Between the screens' measure, twips, and the display's pixels.
#pragma once

#include <windows.h>

#include "ui/property_bag.h"

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
  Bounds pixels(const Bounds& twips) const {
    return {pixels(twips.left), pixels(twips.top), pixels(twips.width), pixels(twips.height)};
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
