// The program as a process of its own, by Windows' calls.
#include "tests/support/program.h"

#include <doctest/doctest.h>

#include "platform/windows/wide_text.h"
#include "tests/windows/started_program.h"

namespace velk {

namespace {

/// A new file that the started program writes to.
FileHandle writtenBy(const TemporaryFolder& folder, const char* name) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  return FileHandle(CreateFileW(toWide(folder.path(name)).c_str(), GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, CREATE_ALWAYS, 0,
                                nullptr));
}

}  // namespace

StartedProgram::StartedProgram(const TemporaryFolder& folder, const std::vector<std::string>& args,
                               const std::string& input) {
  std::wstring line = L"opnimp";
  for (const std::string& word : args) line += L" \"" + toWide(word) + L"\"";
  const FileHandle out = writtenBy(folder, "out");
  const FileHandle err = writtenBy(folder, "err");
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  const FileHandle in(CreateFileW(input.empty() ? L"NUL" : toWide(input).c_str(), GENERIC_READ,
                                  FILE_SHARE_READ, &inherited, OPEN_EXISTING, 0, nullptr));
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = in.get();
  start.hStdOutput = out.get();
  start.hStdError = err.get();
  PROCESS_INFORMATION started{};
  REQUIRE(CreateProcessW(toWide(OPNIMP_PROGRAM).c_str(), line.data(), nullptr, nullptr, TRUE, 0,
                         nullptr, nullptr, &start, &started) != FALSE);
  process_ = FileHandle(started.hProcess);
  CloseHandle(started.hThread);
}

void StartedProgram::pressCtrlC() const {
  const auto routine = reinterpret_cast<LPTHREAD_START_ROUTINE>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernelbase.dll"), "CtrlRoutine")));
  REQUIRE((routine != nullptr));
  constexpr LPVOID ctrlC = nullptr;
  const FileHandle thread(
      CreateRemoteThread(process_.get(), nullptr, 0, routine, ctrlC, 0, nullptr));
  CHECK(thread);
}

int StartedProgram::end() const {
  WaitForSingleObject(process_.get(), INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process_.get(), &status);
  return static_cast<int>(status);
}

Ran runProgram(const TemporaryFolder& folder, const std::vector<std::string>& args,
               const SystemFaults& /*faults*/,
               std::optional<std::chrono::microseconds> /*killedAfter*/) {
  const int status = StartedProgram(folder, args).end();
  return {status, folder.read("out"), folder.read("err")};
}

}  // namespace velk
