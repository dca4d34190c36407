// Makes the windows that show controls.
#pragma once

#include <memory>

#include "platform/windows/forms/control_window.h"
#include "ui/controls.h"
#include "ui/list_view.h"

namespace velk {

/// That of a frame: a titled border that really contains its controls, so that its background can
/// have a colour of its own. Hands its controls' notifications to its parent.
std::unique_ptr<ControlWindow> makeFrameWindow(Frame& frame, const ControlPlace& place);

/// That of a list: virtual, so that it asks the model for the cells it shows, and a file of 32,766
/// records appears as fast as one of ten.
std::unique_ptr<ControlWindow> makeListWindow(ListView& list, const ControlPlace& place);

/// Null for a control without a window, such as a menu.
std::unique_ptr<ControlWindow> makeControlWindow(Control& control, const ControlPlace& place);

}  // namespace velk
