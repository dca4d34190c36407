// The window classes of this folder. They go with the last window, because a DLL that is unloaded
// must not leave any registered.
#pragma once

#include <windows.h>

namespace velk {

inline constexpr wchar_t formClass[] = L"Velk_OpnImp.Form";
inline constexpr wchar_t frameClass[] = L"Velk_OpnImp.Frame";

/// Registers the class with its first use and returns its name.
const wchar_t* registeredClass(const wchar_t* name, WNDPROC procedure);
/// Does nothing for a class while a window of it lives.
void forgetClasses() noexcept;

}  // namespace velk
