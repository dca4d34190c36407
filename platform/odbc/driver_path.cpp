#include "platform/odbc/driver_path.h"

#ifdef _WIN32

#include <windows.h>

#include "base/text.h"

namespace velk {

namespace {

// Wine's own; Windows has no such function.
using UnixFileName = char*(__cdecl*)(const wchar_t*);

UnixFileName unixFileName() {
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  const FARPROC function = GetProcAddress(kernel, "wine_get_unix_file_name");
  return reinterpret_cast<UnixFileName>(reinterpret_cast<void*>(function));
}

}  // namespace

std::string driverPath(std::string_view path) {
  const UnixFileName convert = unixFileName();
  if (convert == nullptr) return std::string(path);
  const std::u16string wide = toUtf16(path);
  char* const converted = convert(reinterpret_cast<const wchar_t*>(wide.c_str()));
  if (converted == nullptr) return std::string(path);
  std::string result = converted;
  HeapFree(GetProcessHeap(), 0, converted);
  return result;
}

}  // namespace velk

#else

namespace velk {

std::string driverPath(std::string_view path) {
  return std::string(path);
}

}  // namespace velk

#endif
