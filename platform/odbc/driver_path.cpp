#include "platform/odbc/driver_path.h"

#ifdef _WIN32

#include <windows.h>

#include "base/text.h"

namespace {

// Under Wine the drivers are those of the system below, which know that system's paths only.
// Windows itself has no such function.
FARPROC pathConversion() {
  return GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name");
}

}  // namespace

std::string_view velk::embeddedDriver() {
  return pathConversion() == nullptr ? "SQLite3 ODBC Driver" : "SQLite3";
}

std::string velk::driverPath(std::string_view path) {
  using UnixFileName = char*(__cdecl*)(const wchar_t*);
  const FARPROC found = pathConversion();
  if (found == nullptr) return std::string(path);
  // By way of void*, because compilers warn of a direct cast between function types.
  const auto convert = reinterpret_cast<UnixFileName>(reinterpret_cast<void*>(found));
  char* const converted = convert(reinterpret_cast<const wchar_t*>(toUtf16(path).c_str()));
  if (converted == nullptr) return std::string(path);
  std::string result = converted;
  HeapFree(GetProcessHeap(), 0, converted);
  return result;
}

#else

std::string_view velk::embeddedDriver() {
  return "SQLite3";
}

std::string velk::driverPath(std::string_view path) {
  return std::string(path);
}

#endif
