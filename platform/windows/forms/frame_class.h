// The window class of frames: a titled border that really contains its controls, so that its
// background can have a colour of its own.
#pragma once

#include <windows.h>

namespace velk {

/// Registered with the first call. A frame's window keeps its
/// ControlWindow as user data and hands its controls' notifications to its parent.
const wchar_t* frameClassName();

}  // namespace velk
