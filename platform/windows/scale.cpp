#include "platform/windows/scale.h"

#include "platform/windows/handles.h"

namespace velk {

Scale Scale::ofDisplay() {
  const UniqueDisplayDc display(GetDC(nullptr));
  // One direction is enough: Windows has the same number for both.
  const int dotsPerInch = GetDeviceCaps(display.get(), LOGPIXELSX);
  return Scale(dotsPerInch > 0 ? dotsPerInch : 96);  // a session without a display has none
}

}  // namespace velk
