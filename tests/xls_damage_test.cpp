// Workbooks of several programs, damaged systematically. Where a length or a table tells of the
// damage, a file reads as the whole one does or is refused: never with fewer or other cells.
#include <chrono>
#include <cstdlib>
#include <optional>

#include "base/sanitized.h"
#include "platform/spreadsheet/xls/compound_layout.h"
#include "platform/spreadsheet/xls/records.h"
#include "platform/spreadsheet/xls/workbook_reader.h"
#include "platform/spreadsheet/xls/xls_file.h"
#include "tests/support/checks.h"
#include "tests/support/workbook_seeds.h"

namespace velk::xls {
namespace {

using Bytes = std::string;

/// Of so many cases one is tried where all of them would take minutes, unless time does not matter.
std::size_t oneOf(std::size_t cases) {
  return std::getenv("OPNIMP_LONG") == nullptr ? cases : 1;
}

Texts cellsOf(std::string_view stream) {
  const SheetContents sheet = readWorkbook(stream, ColumnSet().set());
  Texts texts{sheet.hiddenName};
  for (const auto& row : sheet.cells.rows()) {
    for (const Cell& cell : row) {
      texts.push_back(std::to_string(cell.row) + "," + std::to_string(cell.column) + " " +
                      sheet.text(cell.row, cell.column));
    }
  }
  return texts;
}

Texts cellsOfFile(std::string_view file) {
  return cellsOf(workbookStream(file).view());
}

/// Empty: refused. Anything else than that error fails the test.
template <class Read>
std::optional<Texts> read(Read&& what) {
  const auto start = std::chrono::steady_clock::now();
  std::optional<Texts> cells;
  const std::int32_t error = errorOf([&] { cells = what(); });
  // No assertions of the framework: half a million of them take longer than all the reading.
  if (error != 0 && error != static_cast<std::int32_t>(ErrorNumber::InvalidFileFormat)) {
    FAIL("error " << error);
  }
  if (std::chrono::steady_clock::now() - start > std::chrono::seconds(2)) FAIL("too slow");
  return cells;
}

// With sanitizers, which slow this down twentyfold, one case of so many is tried.
constexpr std::size_t stride = OPNIMP_SANITIZED ? 23 : 1;

/// A seed, and what is done to it.
struct Patient {
  std::string_view name;
  Bytes file = workbookSeed(name);
  Bytes stream = Bytes(workbookStream(file).view());
  Texts cells = cellsOf(stream);
  mutable std::size_t tried = 0;

  void checkFile(const Bytes& damaged, std::size_t at) const {
    check(at, [&] { return cellsOfFile(damaged); });
  }
  void checkStream(const Bytes& damaged, std::size_t at) const {
    check(at, [&] { return cellsOf(damaged); });
  }

 private:
  template <class Read>
  void check(std::size_t at, Read&& damaged) const {
    if (tried++ % stride != 0) return;
    const std::optional<Texts> found = read(damaged);
    if (!found || *found == cells) return;
    FAIL_CHECK(name << " reads with other cells, damaged at " << at);
  }
};

template <class Damage>
void forEachSeed(Damage damage) {
  for (const std::string_view name : workbookSeeds) {
    const Patient seed{name};
    REQUIRE(seed.cells.size() > 10);
    damage(seed);
  }
}

std::uint32_t numberAt(const Bytes& file, std::size_t at) {
  return loadNumber<std::uint32_t>(file.data() + at);
}

/// The sectors of a small file that hold tables or the directory.
std::vector<std::uint32_t> structureSectors(const Bytes& file) {
  std::vector<std::uint32_t> sectors;
  const std::uint32_t table = numberAt(file, headerTable);
  for (const std::size_t at : {headerTable, headerFirstDirectory, headerFirstMiniTable}) {
    for (std::uint32_t sector = numberAt(file, at); sector < firstSpecialSector;) {
      sectors.push_back(sector);
      sector = numberAt(file, (table + 1) * std::size_t{512} + sector * std::size_t{4});
    }
  }
  return sectors;
}

TEST_CASE("files that are cut") {
  forEachSeed([](const Patient& seed) {
    for (std::size_t length = 0; length < seed.file.size(); length += 64) {
      seed.checkFile(seed.file.substr(0, length), length);
    }
  });
}

TEST_CASE("headers, tables and directories, byte by byte") {
  forEachSeed([](const Patient& seed) {
    std::vector<std::size_t> starts{0};
    for (const std::uint32_t sector : structureSectors(seed.file)) {
      starts.push_back((sector + 1) * std::size_t{512});
    }
    for (const std::size_t start : starts) {
      for (std::size_t at = start; at < start + 512; at += isSanitized ? oneOf(11) : 1) {
        for (const char byte : {'\0', '\1', '\x7F', '\x80', '\xFF'}) {
          Bytes damaged = seed.file;
          damaged[at] = byte;
          seed.checkFile(damaged, at);
        }
      }
    }
  });
}

TEST_CASE("sectors that lead to any other") {
  forEachSeed([](const Patient& seed) {
    const std::size_t sectors = seed.file.size() / 512;
    const std::uint32_t miniTable = numberAt(seed.file, headerFirstMiniTable);
    for (const std::uint32_t table : {numberAt(seed.file, headerTable), miniTable}) {
      if (table >= firstSpecialSector) continue;
      const std::size_t entries = table == miniTable ? 128 : sectors;
      for (std::size_t entry = 0; entry < entries; ++entry) {
        for (std::size_t to = 0; to < entries; to += isSanitized ? oneOf(13) : 1) {
          const std::size_t at = (table + 1) * std::size_t{512} + entry * 4;
          Bytes damaged = seed.file;
          for (std::size_t i = 0; i < 4; ++i) damaged[at + i] = static_cast<char>(to >> 8 * i);
          seed.checkFile(damaged, at);
        }
      }
    }
  });
}

/// Where each record of a stream begins, and at last where the last one ends.
std::vector<std::size_t> recordsIn(const Bytes& stream) {
  std::vector<std::size_t> starts{0};
  // Behind the last sheet there may be anything up to the end of the sector.
  for (std::size_t at = 0; at + recordHeaderSize <= stream.size();) {
    if (loadNumber<std::uint16_t>(stream.data() + at) == 0) break;
    at += recordHeaderSize + loadNumber<std::uint16_t>(stream.data() + at + 2);
    starts.push_back(at);
  }
  return starts;
}

TEST_CASE("lengths of records") {
  forEachSeed([](const Patient& seed) {
    const std::vector<std::size_t> starts = recordsIn(seed.stream);
    for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
      const std::size_t length = starts[i + 1] - starts[i] - recordHeaderSize;
      std::vector<std::size_t> wrong{length - 1,
                                     length + 1,
                                     0,
                                     1,
                                     8224,
                                     65535,
                                     seed.stream.size() - starts[i] - recordHeaderSize};
      // So long that whole records behind it are hidden.
      for (std::size_t last = i + 2; last < std::min(i + 9, starts.size()); ++last) {
        wrong.push_back(starts[last] - starts[i] - recordHeaderSize);
      }
      for (const std::size_t other : wrong) {
        Bytes damaged = seed.stream;
        damaged[starts[i] + 2] = static_cast<char>(other);
        damaged[starts[i] + 3] = static_cast<char>(other >> 8);
        seed.checkStream(damaged, starts[i]);
      }
    }
  });
}

// What a byte among the cells says cannot be known; but whatever it is, reading ends well.
TEST_CASE("any byte of a stream") {
  forEachSeed([](const Patient& seed) {
    for (std::size_t at = 0; at < seed.stream.size(); at += oneOf(isSanitized ? 67 : 7)) {
      for (const char byte : {'\0', '\1', '\x7F', '\x80', '\xFF'}) {
        Bytes damaged = seed.stream;
        damaged[at] = byte;
        read([&] { return cellsOf(damaged); });
      }
    }
  });
}

}  // namespace
}  // namespace velk::xls
