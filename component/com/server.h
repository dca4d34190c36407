// The DLL itself: where it lies, and what holds it.
#pragma once

#include <string>

namespace velk {

/// Lets the DLL hold a reference to itself: the end of COM in a host's thread unloads it without
/// asking, and a screen may be open. letGo, when the module is not in use and COM holds it, takes
/// the reference back; it never does so from code that returns into the DLL alone.
void keepLoaded();
void letGo();

/// Full path of the DLL's file.
std::wstring serverPath();

}  // namespace velk
