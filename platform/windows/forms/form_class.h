// The window class of forms. Both classes of this folder go with the last window, because a DLL
// that is unloaded must leave none behind.
#pragma once

#include <windows.h>

namespace velk {

/// Registered with the first call.
const wchar_t* formClassName(WNDPROC procedure);
/// Does nothing while a window of the class lives.
void forgetFormClass() noexcept;

}  // namespace velk
