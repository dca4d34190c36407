#include "tests/tour/host_process.h"

#include "base/errors.h"
#include "tests/tour/seen_windows.h"

namespace velk {

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

}  // namespace velk
