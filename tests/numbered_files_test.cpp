#include "shared/numbered_files.h"

#include "tests/support/checks.h"
#include "tests/support/memory_files.h"

namespace velk {
namespace {

using namespace std::string_literals;

struct Files {
  MemoryFiles memory;
  NumberedFiles numbered{memory, CodePage::windows1252()};

  explicit Files(const std::string& bytes) { memory.contents["in"] = bytes; }
};

Texts linesRead(const std::string& bytes) {
  Files files(bytes);
  NumberedFiles& f = files.numbered;
  f.openForInput(1, "in");
  Texts found;
  while (!f.atEnd(1)) found.push_back(f.lineInput(1));
  CHECK(errorOf([&] { f.lineInput(1); }) == 62);
  return found;
}

TEST_CASE("lines of a file") {
  const std::pair<std::string, Texts> rows[] = {{"", {}},
                                                {"a\rb\r\nc", {"a", "b", "c"}},
                                                {"a\nb\r\n", {"a\nb"}},
                                                {"\r\r\n\n", {"", "", "\n"}},
                                                {"a\x1A\0b\r\nc"s, {"a\x1A\0b"s, "c"}},
                                                {"\xEF\xBB\xBFName\x80\r", {"ï»¿Name€"}}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    CHECK(linesRead(row.first) == row.second);
  }
  for (std::size_t length = 64 * 1024 - 2; length <= 64 * 1024 + 1; ++length) {
    CAPTURE(length);  // a line end across the read buffer
    const std::string first(length, 'x');
    CHECK(linesRead(first + "\r\nnext") == Texts{first, "next"});
    CHECK(linesRead(first + "\rnext") == Texts{first, "next"});
    CHECK(linesRead(first + "\nnext") == Texts{first + "\nnext"});
  }
}

TEST_CASE("numbers are the lowest free ones, the last is the log's") {
  Files files("text");
  NumberedFiles& f = files.numbered;
  for (std::int16_t number = 1; number < NumberedFiles::lastNumber; ++number) {
    REQUIRE(f.freeFile() == number);
    f.openForInput(number, "in");
  }
  CHECK(errorOf([&] { f.freeFile(); }) == 67);
  REQUIRE(f.freeFile(NumberedFiles::Use::ErrorLog) == 255);
  f.openForAppend(255, "log");
  CHECK(errorOf([&] { f.freeFile(NumberedFiles::Use::ErrorLog); }) == 67);
  f.close(7);
  CHECK(f.freeFile() == 7);
  files.memory.failing = MemoryFiles::Call::Close;
  CHECK(errorOf([&] { f.close(255); }) == 57);
  CHECK(f.freeFile(NumberedFiles::Use::ErrorLog) == 7);
  CHECK(files.memory.open == 253);
}

TEST_CASE("whole files") {
  std::string bytes;  // characters of one, two and three bytes of UTF-8 around the reading steps
  while (bytes.size() < 700'000) bytes += bytes.size() % 3 == 0 ? "\x80"s : "a\xE9\r\n\0"s;
  for (const std::string& content : {""s, "plain\r\n"s, bytes}) {
    Files files(content);
    files.numbered.openForInput(1, "in");
    if (!content.empty()) files.numbered.lineInput(1);  // reading starts at the first byte again
    CHECK((files.numbered.readAll(1) == CodePage::windows1252().decode(content)));
  }
  const std::pair<std::uint64_t, std::int32_t> claims[] = {{5, 62}, {3, 0}, {0x80000000, 7}};
  for (const auto& row : claims) {
    CAPTURE(row.first);
    Files files("text");
    files.memory.claimedLength = row.first;
    files.numbered.openForInput(1, "in");
    CHECK(errorOf([&] { files.numbered.readAll(1); }) == row.second);
  }
}

}  // namespace
}  // namespace velk
