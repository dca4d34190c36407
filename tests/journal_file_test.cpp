// The journal's file: its checksums, and what it makes of an end that was cut off and of damage.
#include "apps/opnimp/journal/journal_file.h"

#include <tuple>

#include "apps/opnimp/journal/crc32c.h"
#include "apps/opnimp/journal/sha256.h"
#include "tests/support/checks.h"
#include "tests/support/temporary_folder.h"
#ifdef _WIN32
#include "platform/windows/windows_kept_file.h"
#else
#include "platform/native/native_kept_file.h"
#endif

using namespace velk;

namespace {

using Entries = std::vector<std::pair<EntryType, std::string>>;

struct Read {
  Entries entries;
  JournalEnd end;
};

Read readAll(const std::string& path) {
  Read read;
  read.end = readEntries(
      *openKept(path, KeptFor::Reading),
      [&](EntryType type, std::string_view payload) { read.entries.emplace_back(type, payload); });
  return read;
}

/// Adds entries to the file as a run does.
void add(const std::string& path, const Entries& entries, bool synced = false) {
  auto file = openKept(path, KeptFor::Writing);
  const JournalEnd end = readEntries(*file, [](EntryType, std::string_view) {});
  JournalFile journal(std::move(file), end);
  for (const auto& [type, payload] : entries) journal.write(type, payload);
  if (synced) journal.sync();
}

/// A file whose disk can be full.
class FillingFile final : public KeptFile {
 public:
  explicit FillingFile(std::string path) : file_(openKept(path, KeptFor::Writing)) {}
  bool full = false;
  bool failsToSync = false;
  int writes = 0;

  std::uint64_t length() const override { return file_->length(); }
  std::size_t read(std::uint64_t offset, char* to, std::size_t count) const override {
    return file_->read(offset, to, count);
  }
  bool isWrittenElsewhere() const override { return file_->isWrittenElsewhere(); }
  void append(std::string_view bytes) override {
    ++writes;
    file_->append(full ? bytes.substr(0, 12) : bytes);
    if (full) throw RuntimeError(ErrorNumber::DiskFull);
  }
  void sync() override {
    if (failsToSync) throw RuntimeError(ErrorNumber::DeviceIo);
    file_->sync();
  }
  void truncate(std::uint64_t length) override { file_->truncate(length); }

 private:
  std::unique_ptr<KeptFile> file_;
};

const Entries three{{EntryType::RunBegun, "run"},
                    {EntryType::RecordBegun, ""},
                    {EntryType::RecordEnded, std::string(3'000'000, 'x')}};

}  // namespace

TEST_CASE("checksums and hashes are the published ones") {
  const std::tuple<std::string, std::uint32_t> sums[] = {{"", 0},
                                                         {"123456789", 0xE3069283},
                                                         {std::string(32, '\0'), 0x8A9136AA},
                                                         {std::string(32, '\xFF'), 0x62A8AB43}};
  for (const auto& [bytes, sum] : sums) {
    CHECK(crc32c(bytes) == sum);
    CHECK(crc32cPlainly(bytes) == sum);
    const std::size_t half = bytes.size() / 2;
    CHECK(crc32c(bytes.substr(half), crc32c(bytes.substr(0, half))) == sum);
  }
  const std::tuple<std::string, std::string> hashes[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {std::string(1'000'000, 'a'),
       "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
  for (const auto& [bytes, hash] : hashes) {
    CHECK(hexText(Sha256().add(bytes).finish()) == hash);
    Sha256 split;
    for (std::size_t at = 0; at < bytes.size(); at += 61) split.add(bytes.substr(at, 61));
    CHECK(hexText(split.finish()) == hash);
  }
}

TEST_CASE("the processor's own instructions take a block as the plain way does") {
  const TakeSha256Block fast = sha256BlockOfProcessor();
  if (fast == nullptr) return;
  Sha256State plain{1, 2, 3, 4, 5, 6, 7, 0xFFFFFFFF};
  Sha256State own = plain;
  std::array<unsigned char, sha256BlockSize> block{};
  for (int round = 0; round < 200; ++round) {
    block[static_cast<std::size_t>(round) % block.size()] += static_cast<unsigned char>(77 + round);
    takeSha256BlockPlainly(plain, block.data());
    fast(own, block.data());
    REQUIRE(own == plain);
  }
}

TEST_CASE("what waits goes with the next entry, or, if that fails, with the one after it") {
  const TemporaryFolder folder;
  auto filling = std::make_unique<FillingFile>(folder.path("journal"));
  FillingFile& file = *filling;
  JournalFile journal(std::move(filling), {});
  file.writes = 0;
  journal.add(EntryType::RecordEnded, "first");
  CHECK(readAll(folder.path("journal")).entries.empty());
  file.full = true;
  CHECK(errorOf([&] { journal.write(EntryType::RecordBegun, "never begun"); }) == 61);
  CHECK(readAll(folder.path("journal")).end.torn == 0);
  file.full = false;
  journal.write(EntryType::RunEnded, "end");
  CHECK(file.writes == 2);
  // What a failed sync lost may not be there any more, and a later one would not say so.
  file.failsToSync = true;
  CHECK(errorOf([&] { journal.sync(); }) == 57);
  file.failsToSync = false;
  CHECK(errorOf([&] { journal.sync(); }) == 57);
  CHECK(errorOf([&] { journal.write(EntryType::RunEnded, "end"); }) == 57);
  CHECK(readAll(folder.path("journal")).entries ==
        Entries{{EntryType::RecordEnded, "first"}, {EntryType::RunEnded, "end"}});
}

TEST_CASE("an end that was cut off anywhere loses the last entry only, and is written over") {
  const TemporaryFolder folder;
  const Entries two{{EntryType::RunBegun, "the run"}, {EntryType::RecordBegun, "a record"}};
  add(folder.path("whole"), two);
  const std::string bytes = folder.read("whole");
  const std::size_t lastEntry = 4 + 1 + two[1].second.size() + 4;
  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    CAPTURE(length);
    const std::string path = folder.write("cut", bytes.substr(0, length));
    const Read read = readAll(path);
    const std::size_t whole = length == bytes.size()               ? 2
                              : length >= bytes.size() - lastEntry ? 1
                                                                   : 0;
    CHECK(read.entries == Entries(two.begin(), two.begin() + static_cast<int>(whole)));
    CHECK((read.end.torn > 0) == (read.end.whole < length));
    CHECK_FALSE(read.end.damaged);
    add(path, {{EntryType::RunEnded, ""}});
    CHECK(readAll(path).entries.size() == whole + 1);
    CHECK(readAll(path).end.torn == 0);
  }
  // A program that is killed leaves the room for what it would have added.
  const std::string zeros = folder.write("cut", bytes + std::string(40'000, '\0'));
  CHECK(readAll(zeros).end.torn == 0);
  add(zeros, {{EntryType::RunEnded, ""}});
  CHECK(readAll(zeros).entries.size() == 3);
  const std::string room = folder.write("room", std::string(40'000, '\0'));
  CHECK(readAll(room).entries.empty());
  add(room, two);
  CHECK(readAll(room).entries == two);
  CHECK(folder.read("cut").size() == bytes.size() + lastEntry - two[1].second.size());
}

TEST_CASE("one changed byte is never taken for an entry, and damage is told from an end") {
  const TemporaryFolder folder;
  add(folder.path("whole"), {{EntryType::RunBegun, "the run"}}, true);
  const std::size_t mark = folder.read("whole").size();
  add(folder.path("whole"), {{EntryType::RunEnded, "its end"}});
  const std::string bytes = folder.read("whole");
  const std::size_t firstEnd = 8 + 9 + 7;
  for (std::size_t at = 8; at < bytes.size(); ++at) {
    CAPTURE(at);
    std::string changed = bytes;
    changed[at] = static_cast<char>(changed[at] ^ 0x20);
    const Read read = readAll(folder.write("changed", changed));
    CHECK(read.entries.size() == (at < firstEnd ? 0 : 1));
    CHECK(read.end.damaged == (at < firstEnd));
    CHECK((read.end.torn > 0) == (read.end.whole < bytes.size()));
  }
  CHECK(mark > firstEnd);
  const std::string other = folder.write("other", "Customer ID,Reference\r\n");
  CHECK(errorOf([&] { readAll(other); }) == 321);
  CHECK(errorOf([&] { readAll(folder.write("disc", std::string(600, '\0') + "CD001")); }) == 321);
  CHECK(errorOf([&] { readAll(folder.path("none")); }) == 53);
}

TEST_CASE("a loss of power may lose any part of what was not synced, and that is no damage") {
  const TemporaryFolder folder;
  Entries entries{{EntryType::RunBegun, std::string(3'000, 'r')}};
  add(folder.path("whole"), entries, true);
  const std::size_t synced = folder.read("whole").size();
  constexpr std::size_t markSize = 4 + 1 + 4;
  const Entries later(40, {EntryType::RecordEnded, std::string(90, 'x')});
  add(folder.path("whole"), later);
  const std::string bytes = folder.read("whole");
  for (std::size_t sector = 0; sector < bytes.size(); sector += 512) {
    CAPTURE(sector);
    std::string lost = bytes;
    lost.replace(sector, std::min<std::size_t>(512, bytes.size() - sector), 512, '\0');
    if (sector < 8) continue;  // the signature is synced before anything else
    const Read read = readAll(folder.write("lost", lost));
    CHECK(read.end.damaged == (sector + 512 <= synced - markSize));
    CHECK(read.end.whole <= std::max<std::size_t>(sector, 8));
  }
}
