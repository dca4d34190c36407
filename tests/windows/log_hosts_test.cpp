// One error log that several hosts write.
#include <sstream>
#include <vector>

#include "base/dates.h"
#include "platform/headless/headless_desktop.h"
#include "platform/windows/windows_files.h"
#include "shared/error_log.h"
#include "tests/support/temporary_folder.h"
#include "tests/windows/server_dll.h"

namespace velk {
namespace {

constexpr int hosts = 4;
constexpr int linesOfHost = 250;

/// Its number and the folder are in the environment: a host that writes lines to the log.
TEST_CASE("files: one host of several" * doctest::skip()) {
  wchar_t folder[MAX_PATH] = L"";
  wchar_t number[9] = L"";
  GetEnvironmentVariableW(L"OPNIMP_LOG_FOLDER", folder, MAX_PATH);
  GetEnvironmentVariableW(L"OPNIMP_LOG_HOST", number, 9);
  WindowsFileSystem system;
  NumberedFiles files(system, CodePage::windows1252());
  const HeadlessDesktop desktop(
      fromWide(folder), [] { return Date{}; }, [](const Message&) {});
  FileErrorLog log(files, desktop);
  for (int i = 0; i < linesOfHost; ++i) {
    log.append("host " + fromWide(number) + " line " + std::to_string(i) + std::string(300, '.'));
  }
}

TEST_CASE("files: lines of one log by several hosts are whole, and none is lost") {
  const TemporaryFolder folder;
  SetEnvironmentVariableW(L"OPNIMP_LOG_FOLDER", toWide(folder.path("")).c_str());
  std::vector<HANDLE> running;
  for (int host = 0; host < hosts; ++host) {
    SetEnvironmentVariableW(L"OPNIMP_LOG_HOST", std::to_wstring(host).c_str());
    std::wstring line = L"\"" + modulePath(nullptr) + L"\" -ns -tc=\"files: one host*\"";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    REQUIRE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                           nullptr, &start, &process) != FALSE);
    CloseHandle(process.hThread);
    running.push_back(process.hProcess);
  }
  for (const HANDLE process : running) {
    CHECK(WaitForSingleObject(process, 60'000) == WAIT_OBJECT_0);
    CloseHandle(process);
  }
  int next[hosts] = {};
  std::istringstream log(folder.read("Error.log"));
  for (std::string line; std::getline(log, line);) {
    const int host = line.size() > 5 ? line[5] - '0' : hosts;
    REQUIRE_MESSAGE((host >= 0 && host < hosts), line);
    CHECK(line == "host " + std::to_string(host) + " line " + std::to_string(next[host]++) +
                      std::string(300, '.') + "\r");
  }
  for (const int count : next) CHECK(count == linesOfHost);
}

}  // namespace
}  // namespace velk
