#include "platform/native/native_files.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>

#include "platform/native/native_kept_file.h"
#include "tests/support/checks.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

std::string readSome(InputFile& file, std::size_t count) {
  std::string bytes(count, '\0');
  bytes.resize(file.read(bytes.data(), count));
  return bytes;
}

/// The errors of opening for reading, for appending and for replacing.
std::array<int, 3> openingErrors(const std::string& path) {
  NativeFileSystem files;
  return {errorOf([&] { files.openInput(path); }), errorOf([&] { files.openAppend(path); }),
          errorOf([&] { files.openReplacement(path); })};
}

/// The error of a routine under a smaller limit of the process.
template <class Routine>
std::int32_t errorUnder(decltype(RLIMIT_FSIZE) what, rlim_t value, Routine routine) {
  rlimit before{};
  getrlimit(what, &before);
  const rlimit limit{value, before.rlim_max};
  setrlimit(what, &limit);
  const std::int32_t error = errorOf(routine);
  setrlimit(what, &before);
  return error;
}

TEST_CASE("reading, seeking, growing, appending") {
  const TemporaryFolder folder;
  NativeFileSystem files;
  const auto in = files.openInput(folder.write("é.csv", "0123456789"));
  CHECK(readSome(*in, 4) == "0123");
  in->seek(0);
  CHECK(readSome(*in, 100) == "0123456789");
  CHECK(readSome(*in, 100).empty());
  folder.write("é.csv", "0123456789more");
  CHECK(in->length() == 10);
  CHECK(readSome(*in, 100) == "more");
  const auto out = files.openAppend(folder.path("é.csv"));
  files.openAppend(folder.path("é.csv"))->write("\r\ntwo");
  out->write("\r\nthree");
  out->close();
  out->close();
  CHECK(folder.read("é.csv") == "0123456789more\r\ntwo\r\nthree");
}

TEST_CASE("replacing") {
  const TemporaryFolder folder;
  NativeFileSystem files;
  const std::string path = folder.write("book.xls", "before");
  files.openReplacement(path)->write("never closed");
  auto out = files.openReplacement(path);
  out->write("after");
  CHECK(folder.read("book.xls") == "before");
  out->close();
  out.reset();
  CHECK(folder.read("book.xls") == "after");
  out = files.openReplacement(folder.path("folder"));
  std::filesystem::create_directories(folder.path("folder/full"));
  CHECK(errorOf([&] { out->close(); }) == 75);
  out.reset();
  files.openReplacement(folder.path("new"))->close();
  CHECK(folder.has("new"));
  const std::filesystem::directory_iterator left{folder.path("")};
  CHECK(std::count_if(begin(left), end(left),
                      [](auto& f) { return f.path().extension() == ".tmp"; }) == 0);
}

TEST_CASE("opening exclusively") {
  const TemporaryFolder folder;
  NativeFileSystem files;
  const std::string path = folder.path("book.xls");
  CHECK(files.openExclusively(path));
  CHECK_FALSE(files.openExclusively(path));
  const int other = ::open(path.c_str(), O_RDWR);
  struct flock whole {};
  whole.l_type = F_RDLCK;
  REQUIRE(fcntl(other, F_OFD_SETLK, &whole) == 0);
  CHECK(errorOf([&] { files.openExclusively(path); }) == 70);
  close(other);
  files.remove(path);
  CHECK_FALSE(folder.has("book.xls"));
  CHECK(errorOf([&] { files.remove(path); }) == 53);
  CHECK(errorOf([&] { files.openExclusively(folder.path("")); }) == 75);
  std::filesystem::create_symlink("nothing", folder.path("link"));
  CHECK(errorOf([&] { files.openExclusively(folder.path("link")); }) == 53);
  CHECK_FALSE(folder.has("nothing"));
  CHECK(errorOf([&] { files.openExclusively(folder.path("none/book.xls")); }) == 76);
}

TEST_CASE("nothing is written through a symbolic link") {
  const TemporaryFolder folder;
  NativeFileSystem files;
  const std::string target = folder.write("target", "theirs");
  const std::string link = folder.path("link");
  std::filesystem::create_symlink("target", link);
  CHECK(errorOf([&] { files.openAppend(link); }) == 75);
  CHECK(errorOf([&] { openKept(link, KeptFor::Writing); }) == 75);
  const auto replacement = files.openReplacement(link);
  replacement->write("ours");
  replacement->close();  // takes the link's place
  CHECK(folder.read("link") == "ours");
  CHECK(folder.read("target") == "theirs");
}

TEST_CASE("what does not open") {
  const TemporaryFolder folder;
  folder.write("file", "");
  REQUIRE(mkfifo(folder.path("pipe").c_str(), 0600) == 0);
  std::filesystem::create_symlink("loop", folder.path("loop"));
  const struct {
    std::string path;
    int reading, writing;
  } rows[] = {{folder.path("missing"), 53, 0},
              {folder.path("no/such/folder"), 76, 76},
              {folder.path("file/below"), 76, 76},
              {folder.path(""), 75, 75},
              {folder.path("pipe"), 75, 75},
              {"/dev/null", 75, 75},
              {folder.path("loop"), 75, 75},
              {folder.path(std::string(300, 'x')), 52, 52},
              {folder.path("file") + std::string("\0.csv", 5), 53, 53}};
  for (const auto& row : rows) {
    CAPTURE(row.path);
    CHECK(openingErrors(row.path) == std::array{row.reading, row.writing, row.writing});
  }
}

TEST_CASE("files that the user may not touch") {
  const TemporaryFolder folder;
  const std::string path = folder.write("secret", "x");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  std::filesystem::permissions(folder.path(""), std::filesystem::perms::all);
  const uid_t user = geteuid();
  if (user == 0 && seteuid(65534) != 0) {  // nobody
    MESSAGE("not run: the superuser may not become another user here");
    return;
  }
  const std::array<int, 3> errors = openingErrors(path);
  if (user == 0) REQUIRE(seteuid(0) == 0);
  CHECK(errors == std::array{70, 70, 70});
}

TEST_CASE("running out") {
  const TemporaryFolder folder;
  NativeFileSystem files;
  const std::string path = folder.write("in", "x");
  CHECK(errorUnder(RLIMIT_NOFILE, 0, [&] { files.openInput(path); }) == 67);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const auto write = [&] { files.openAppend(folder.path("out"))->write("123456789"); };
  const std::int32_t full = errorUnder(RLIMIT_FSIZE, 6, write);
  std::signal(SIGXFSZ, handler);
  CHECK(full == 61);
  CHECK(folder.read("out") == "123456");  // the part that fitted
}

}  // namespace
}  // namespace velk
