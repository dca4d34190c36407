#include "tests/tour/host_process.h"

#include "base/errors.h"
#include "tests/tour/seen_windows.h"

namespace velk {

namespace {

// Windows reads it when a user logs on, Wine when a process starts.
LSTATUS setDotsPerInch(DWORD dotsPerInch) {
  return RegSetKeyValueW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", L"LogPixels", REG_DWORD,
                         &dotsPerInch, sizeof dotsPerInch);
}

}  // namespace

HostProcess::HostProcess(const std::wstring& program, const std::wstring& arguments) {
  std::wstring commandLine = L'"' + program + L"\" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  if (CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                     nullptr, &startup, &started) == FALSE) {
    throw RuntimeError(ErrorNumber::FileNotFound, "The tour cannot start the host");
  }
  CloseHandle(started.hThread);
  process_.reset(started.hProcess);
  id_ = started.dwProcessId;
}

HostProcess::~HostProcess() {
  if (WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0) return;
  TerminateProcess(process_.get(), 1);
  WaitForSingleObject(process_.get(), patience);
}

void HostProcess::waitForEnd(DWORD expected) const {
  if (WaitForSingleObject(process_.get(), patience) != WAIT_OBJECT_0) {
    throw RuntimeError(ErrorNumber::InvalidProcedureCall, "The host does not end");
  }
  DWORD status = 0;
  GetExitCodeProcess(process_.get(), &status);
  if (status == expected) return;
  throw RuntimeError(ErrorNumber::InvalidProcedureCall,
                     "The host ended with status " + std::to_string(status));
}

DisplayScale::DisplayScale(int dotsPerInch) {
  if (setDotsPerInch(static_cast<DWORD>(dotsPerInch)) == ERROR_SUCCESS) return;
  throw RuntimeError(ErrorNumber::DeviceIo, "The display's dots per inch cannot be set");
}

DisplayScale::~DisplayScale() {
  setDotsPerInch(usualDotsPerInch);
}

}  // namespace velk
