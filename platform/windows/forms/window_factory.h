// Makes the window that shows a control.
#pragma once

#include <memory>

#include "platform/windows/forms/control_window.h"

namespace velk {

/// Null for a control without a window, such as a menu.
std::unique_ptr<ControlWindow> makeControlWindow(Control& control, const ControlPlace& place);

}  // namespace velk
