// The machine's files, on each system.
#include <filesystem>

#include "tests/support/checks.h"
#include "tests/support/other_user.h"
#include "tests/support/temporary_folder.h"
#ifdef _WIN32
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_files.h"
#include "platform/windows/windows_text.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/native/descriptor.h"
#include "platform/native/native_files.h"
#include "platform/native/native_kept_file.h"
#endif

namespace velk {
namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
using MachineFiles = WindowsFileSystem;
#else
using MachineFiles = NativeFileSystem;
#endif

std::string readSome(InputFile& file, std::size_t count) {
  std::string bytes(count, '\0');
  bytes.resize(file.read(bytes.data(), count));
  return bytes;
}

TEST_CASE("reading, seeking, growing, appending, beside other users of the file") {
  const TemporaryFolder folder;
  MachineFiles files;
  const std::string path = folder.write("Zoë.log", "0123456789");
  const auto in = files.openInput(path);
  CHECK(readSome(*in, 4) == "0123");
  in->seek(0);
  CHECK(readSome(*in, 100) == "0123456789");
  CHECK(readSome(*in, 100).empty());
  const auto first = files.openAppend(path);
  const auto second = files.openAppend(path);
  first->write("one");
  second->write("two");
  first->write("three");
  CHECK(in->length() == 10);
  CHECK(readSome(*in, 100) == "onetwothree");
  first->close();
  first->close();
}

TEST_CASE("a file that replaces another one only when it is complete") {
  const TemporaryFolder folder;
  MachineFiles files;
  const std::string path = folder.write("Zoë.xls", "old");
  for (const bool completed : {false, true}) {
    const auto file = files.openReplacement(path);
    file->write("new");
    CHECK(folder.read("Zoë.xls") == "old");
    if (completed) file->close();
  }
  CHECK(folder.read("Zoë.xls") == "new");
  const auto late = files.openReplacement(folder.path("folder"));
  fs::create_directories(folder.path("folder/full"));
  CHECK(errorOf([&] { late->close(); }) != 0);
  CHECK(folder.files() <= 3);  // one that failed goes with its object
  CHECK(errorOf([&] { files.openReplacement(folder.path("")); }) == 75);
}

TEST_CASE("opening exclusively") {
  const TemporaryFolder folder;
  MachineFiles files;
  const std::string path = folder.path("Zoë.xls");
  CHECK(files.openExclusively(path));
  CHECK_FALSE(files.openExclusively(path));
  {
    const OtherUser other(path);
    CHECK(errorOf([&] { files.openExclusively(path); }) == 70);
  }
  files.remove(path);
  CHECK_FALSE(folder.has("Zoë.xls"));
  CHECK(errorOf([&] { files.remove(path); }) == 53);
  CHECK(errorOf([&] { files.openExclusively(folder.path("")); }) == 75);
  CHECK(errorOf([&] { files.openExclusively(folder.path("none/book.xls")); }) == 76);
}

TEST_CASE("what does not open") {
  const TemporaryFolder folder;
  MachineFiles files;
  folder.write("file", "x");
#ifdef _WIN32
  const HANDLE locked = CreateFileW(toWide(folder.path("locked")).c_str(), GENERIC_WRITE, 0,
                                    nullptr, CREATE_NEW, 0, nullptr);
#else
  REQUIRE(mkfifo(folder.path("pipe").c_str(), 0600) == 0);
  fs::create_symlink("loop", folder.path("loop"));
#endif
  const struct {
    std::string path;
    int reading, writing;
  } rows[] = {{folder.path("missing"), 53, 0},
              {folder.path("no/such/folder"), 76, 76},
              {folder.path(""), 75, 75},
              {folder.path("file") + std::string("\0.csv", 5), 53, 53},
#ifdef _WIN32
              {"NUL", 75, 75},
              {folder.path("locked"), 70, 70},
              {folder.path("a?b"), 52, 52}};
#else
              {folder.path("file/below"), 76, 76},
              {folder.path("pipe"), 75, 75},
              {"/dev/null", 75, 75},
              {folder.path("loop"), 75, 75},
              {folder.path(std::string(300, 'x')), 52, 52}};
#endif
  for (const auto& row : rows) {
    CAPTURE(row.path);
    CHECK(errorOf([&] { files.openInput(row.path); }) == row.reading);
    CHECK(errorOf([&] { files.openAppend(row.path); }) == row.writing);
  }
#ifdef _WIN32
  CloseHandle(locked);
#endif
}

TEST_CASE("the error codes of a failing disk") {
#ifdef _WIN32
  const std::pair<DWORD, int> rows[] = {{ERROR_DISK_FULL, 61},
                                        {ERROR_TOO_MANY_OPEN_FILES, 67},
                                        {ERROR_WRITE_PROTECT, 75},
                                        {ERROR_CRC, 57}};
#else
  const std::pair<int, int> rows[] = {{ENOSPC, 61}, {EDQUOT, 61}, {EFBIG, 61}, {EMFILE, 67},
                                      {EROFS, 75},  {EACCES, 70}, {EIO, 57}};
#endif
  for (const auto& [code, number] : rows) CHECK(fileError(code).number() == number);
}

#ifdef _WIN32
TEST_CASE("a path of more than 260 characters") {
  const TemporaryFolder folder;
  MachineFiles files;
  std::string path = folder.path("");
  for (int i = 0; i < 3; ++i) path += std::string(100, 'x') + (i < 2 ? "\\" : "");
  const std::wstring wide = toWide("\\\\?\\" + path);
  fs::create_directories(fs::path(wide).parent_path());
  files.openAppend(path)->write("far away");
  CHECK(readSome(*files.openInput(path), 100) == "far away");
  fs::remove_all(toWide("\\\\?\\" + folder.path("") + std::string(100, 'x')));
}

TEST_CASE("code pages of the machine") {
  CHECK(codePageOf(1251).decode("\xCF\xF0") == "Пр");
  CHECK(codePageOf(1251).encode("Пр€é") == "\xCF\xF0\x88?");
  CHECK(codePageOf(1252).decode("\x80\x81\xFF") == CodePage::windows1252().decode("\x80\x81\xFF"));
  CHECK(activeCodePage().decode("abc") == "abc");
}
#else
TEST_CASE("nothing is written through a symbolic link") {
  const TemporaryFolder folder;
  MachineFiles files;
  const std::string link = folder.path("link");
  folder.write("target", "theirs");
  fs::create_symlink("target", link);
  CHECK(errorOf([&] { files.openAppend(link); }) == 75);
  CHECK(errorOf([&] { openKept(link, KeptFor::Writing); }) == 75);
  const auto replacement = files.openReplacement(link);
  replacement->write("ours");
  replacement->close();  // takes the link's place
  CHECK(folder.read("link") == "ours");
  CHECK(folder.read("target") == "theirs");
  fs::create_symlink("nothing", folder.path("dangling"));
  CHECK(errorOf([&] { files.openExclusively(folder.path("dangling")); }) == 53);
  CHECK_FALSE(folder.has("nothing"));
}
#endif

}  // namespace
}  // namespace velk
