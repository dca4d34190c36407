#include "platform/windows/forms/scale.h"

namespace velk {

Scale Scale::ofDisplay() {
  const HDC display = GetDC(nullptr);
  const int dotsPerInch = GetDeviceCaps(display, LOGPIXELSX);
  ReleaseDC(nullptr, display);
  return Scale(dotsPerInch > 0 ? dotsPerInch : 96);
}

}  // namespace velk
