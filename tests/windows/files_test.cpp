#include "platform/windows/windows_files.h"

#include <filesystem>
#include <sstream>
#include <vector>

#include "base/dates.h"
#include "platform/headless/headless_desktop.h"
#include "platform/windows/windows_text.h"
#include "shared/error_log.h"
#include "tests/support/temporary_folder.h"
#include "tests/windows/server_dll.h"

namespace velk {
namespace {

namespace fs = std::filesystem;

std::string readAll(FileSystem& files, const std::string& path) {
  const auto file = files.openInput(path);
  std::string bytes(static_cast<std::size_t>(file->length()) + 1, '\0');
  bytes.resize(file->read(bytes.data(), bytes.size()));
  return bytes;
}

TEST_CASE("appending, reading, seeking, beside other users of the file") {
  const TemporaryFolder folder;
  WindowsFileSystem files;
  const std::string path = folder.path("Zoë.log");
  const auto first = files.openAppend(path), second = files.openAppend(path);
  first->write("one");
  second->write("two");
  first->write("three");
  CHECK(readAll(files, path) == "onetwothree");
  const auto in = files.openInput(path);
  char bytes[4];
  CHECK(in->read(bytes, 4) == 4);
  in->seek(0);
  CHECK(in->read(bytes, 3) == 3);
  CHECK(std::string(bytes, 3) == "one");
  first->close();
  first->close();
}

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

TEST_CASE("a path of more than 260 characters") {
  const TemporaryFolder folder;
  WindowsFileSystem files;
  std::string path = folder.path("");
  for (int i = 0; i < 3; ++i) path += std::string(100, 'x') + (i < 2 ? "\\" : "");
  const std::wstring wide = toWide("\\\\?\\" + path);
  fs::create_directories(fs::path(wide).parent_path());
  files.openAppend(path)->write("far away");
  CHECK(readAll(files, path) == "far away");
  fs::remove_all(toWide("\\\\?\\" + folder.path("") + std::string(100, 'x')));
}

TEST_CASE("what does not open") {
  const TemporaryFolder folder;
  WindowsFileSystem files;
  folder.write("file", "x");
  const HANDLE locked = CreateFileW(toWide(folder.path("locked")).c_str(), GENERIC_WRITE, 0,
                                    nullptr, CREATE_NEW, 0, nullptr);
  const struct {
    std::string path;
    int reading, appending;
  } rows[] = {{folder.path("missing"), 53, 0},
              {folder.path("no\\such\\folder"), 76, 76},
              {folder.path(""), 75, 75},
              {"NUL", 75, 75},
              {folder.path("locked"), 70, 70},
              {folder.path("a?b"), 52, 52},
              {folder.path("file") + std::string("\0.csv", 5), 53, 53}};
  for (const auto& row : rows) {
    CAPTURE(row.path);
    CHECK(errorOf([&] { files.openInput(row.path); }) == row.reading);
    CHECK(errorOf([&] { files.openAppend(row.path); }) == row.appending);
  }
  CloseHandle(locked);
}

TEST_CASE("a file that replaces another one only when it is complete") {
  const TemporaryFolder folder;
  WindowsFileSystem files;
  const std::string path = folder.path("Zoë.xls");
  files.openAppend(path)->write("old");
  for (const bool completed : {false, true}) {
    const auto file = files.openReplacement(path);
    file->write("new");
    CHECK(readAll(files, path) == "old");
    if (completed) file->close();
  }
  CHECK(readAll(files, path) == "new");
  CHECK(folder.files() == 1);
  CHECK(errorOf([&] { files.openReplacement(folder.path("")); }) == 75);
}

TEST_CASE("opening exclusively") {
  const TemporaryFolder folder;
  WindowsFileSystem files;
  const std::string path = folder.path("Zoë.xls");
  CHECK(files.openExclusively(path));
  CHECK_FALSE(files.openExclusively(path));
  auto other = files.openInput(path);
  CHECK(errorOf([&] { files.openExclusively(path); }) == 70);
  other.reset();
  files.remove(path);
  CHECK(errorOf([&] { files.remove(path); }) == 53);
  CHECK(errorOf([&] { files.openExclusively(folder.path("")); }) == 75);
}

TEST_CASE("the error codes of a failing disk") {
  const std::pair<DWORD, int> rows[] = {{ERROR_DISK_FULL, 61},
                                        {ERROR_TOO_MANY_OPEN_FILES, 67},
                                        {ERROR_WRITE_PROTECT, 75},
                                        {ERROR_CRC, 57}};
  for (const auto& [code, number] : rows) CHECK(fileError(code).number() == number);
}

TEST_CASE("code pages of the machine") {
  CHECK(codePageOf(1251).decode("\xCF\xF0") == "Пр");
  CHECK(codePageOf(1251).encode("Пр€é") == "\xCF\xF0\x88?");
  CHECK(codePageOf(1252).decode("\x80\x81\xFF") == CodePage::windows1252().decode("\x80\x81\xFF"));
  CHECK(activeCodePage().decode("abc") == "abc");
}

}  // namespace
}  // namespace velk
