// Where the code that runs was loaded from.
#pragma once

#include <windows.h>

#include <string>

namespace velk {

/// Full path of a module's file; null: the process's executable.
std::wstring modulePath(HMODULE module);

/// The module that this code is linked into: the component's DLL, or a program.
HINSTANCE thisModule();

}  // namespace velk
