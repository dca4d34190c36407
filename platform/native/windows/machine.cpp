#include <windows.h>

#include "platform/native/native_clock.h"
#include "platform/native/native_lock_holders.h"
#include "platform/native/native_state.h"
#include "platform/native/native_user.h"
#include "platform/windows/wide_text.h"

namespace velk {

Date localNow() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  const int seconds = (now.wHour * 60 + now.wMinute) * 60 + now.wSecond;
  return dateFromCivil({now.wYear, now.wMonth, now.wDay}, seconds / double{secondsPerDay});
}

// Windows counts its starts.
std::string machineStart() {
  constexpr const wchar_t* key =
      L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Memory Management\\PrefetchParameters";
  DWORD count = 0;
  DWORD size = sizeof count;
  const LSTATUS status =
      RegGetValueW(HKEY_LOCAL_MACHINE, key, L"BootId", RRF_RT_REG_DWORD, nullptr, &count, &size);
  return status == ERROR_SUCCESS ? std::to_string(count) : std::string();
}

std::string environmentVariable(const std::string& name) {
  const std::wstring wide = toWide(name);
  // The first call answers the length with the NUL, the second one without it.
  std::wstring value(GetEnvironmentVariableW(wide.c_str(), nullptr, 0), L'\0');
  value.resize(
      GetEnvironmentVariableW(wide.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return fromWide(value);
}

std::string stateFolder() {
  return environmentVariable("LOCALAPPDATA");
}

std::string settingsFolder() {
  return environmentVariable("APPDATA");
}

std::string userName() {
  DWORD length = 0;
  GetUserNameW(nullptr, &length);
  std::wstring name(length, L'\0');
  if (GetUserNameW(name.data(), &length) == FALSE) return {};
  name.resize(length - 1);  // the length counts the NUL
  return fromWide(name);
}

// Windows tells who has a file open, and not who has locked it.
std::vector<std::string> lockHoldersOf(const std::vector<std::string>& /*paths*/) {
  return {};
}

}  // namespace velk
