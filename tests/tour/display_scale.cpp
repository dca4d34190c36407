#include "tests/tour/display_scale.h"

#include <windows.h>

#include "base/errors.h"

namespace velk {

namespace {

// Windows reads it when a user logs on, Wine when a process starts.
LSTATUS setDotsPerInch(DWORD dotsPerInch) {
  return RegSetKeyValueW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", L"LogPixels", REG_DWORD,
                         &dotsPerInch, sizeof dotsPerInch);
}

}  // namespace

DisplayScale::DisplayScale(int dotsPerInch) {
  if (setDotsPerInch(static_cast<DWORD>(dotsPerInch)) == ERROR_SUCCESS) return;
  throw RuntimeError(ErrorNumber::DeviceIo, "The display's dots per inch cannot be set");
}

DisplayScale::~DisplayScale() {
  setDotsPerInch(usualDotsPerInch);
}

}  // namespace velk
