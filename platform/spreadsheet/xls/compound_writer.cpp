#include "platform/spreadsheet/xls/compound_writer.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "base/text.h"
#include "platform/spreadsheet/little_endian.h"
#include "platform/spreadsheet/xls/compound_layout.h"

namespace velk::xls {

namespace {

constexpr std::size_t sectorSize = 512;
constexpr std::size_t numbersInSector = sectorSize / 4;
constexpr std::size_t numbersInHeader = (headerSize - headerTable) / 4;
// The format allows no other value.

std::uint32_t sectorsFor(std::size_t items, std::size_t itemsInSector) {
  return static_cast<std::uint32_t>((items + itemsInSector - 1) / itemsInSector);
}

std::size_t paddingBehind(std::size_t length, std::size_t unit) {
  return (unit - length % unit) % unit;
}

/// The sectors in their order in the file: the stream (or the mini stream with it), the
/// directory, the table of mini sectors, the table of sectors, and the lists of its sectors that do
/// not fit into the header.
struct Layout {
  explicit Layout(std::size_t streamLength)
      : isMini(streamLength < miniCutoff),
        miniSectors(isMini ? sectorsFor(streamLength, miniSectorSize) : 0),
        data(sectorsFor(isMini ? miniSectors * miniSectorSize : streamLength, sectorSize)),
        directory(data),
        miniTable(directory + 1),
        table(miniTable + sectorsFor(miniSectors, numbersInSector)) {
    // The tables describe themselves, too, so that one may need a sector more for its own sectors.
    std::uint32_t before = 0;
    do {
      before = tableSectors + listSectors;
      tableSectors = sectorsFor(table + before, numbersInSector);
      // The last number of a list names the next list, so it holds one less.
      const std::size_t inLists =
          tableSectors - std::min<std::size_t>(tableSectors, numbersInHeader);
      listSectors = sectorsFor(inLists, numbersInSector - 1);
    } while (tableSectors + listSectors != before);
  }

  bool isMini;
  std::uint32_t miniSectors;
  std::uint32_t data;  ///< sectors of the stream
  std::uint32_t directory;
  std::uint32_t miniTable;
  std::uint32_t table;
  std::uint32_t tableSectors = 0;
  std::uint32_t listSectors = 0;

  std::uint32_t lists() const { return table + tableSectors; }
};

void appendNumbers(std::string& to, std::uint32_t number, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) appendNumber(to, number);
}

void fillSector(std::string& to) {
  appendNumbers(to, freeSector, paddingBehind(to.size(), sectorSize) / 4);
}

/// Sectors in a row, each followed by its neighbour.
void appendChain(std::string& to, std::uint32_t first, std::uint32_t count) {
  for (std::uint32_t i = 1; i < count; ++i) appendNumber(to, first + i);
  if (count > 0) appendNumber(to, endOfChain);
}

/// The sectors of the table, from the `from`th on and `count` of them at most.
void appendTableNumbers(std::string& to, const Layout& at, std::size_t from, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const bool used = from + i < at.tableSectors;
    appendNumber(to, used ? static_cast<std::uint32_t>(at.table + from + i) : freeSector);
  }
}

std::string header(const Layout& at) {
  std::string bytes(signature);
  bytes.append(16, '\0');  // no class
  for (const unsigned number :
       {0x3EU, 3U, 0xFFFEU, 9U, 6U}) {  // versions, byte order, sector sizes
    appendNumber(bytes, static_cast<std::uint16_t>(number));
  }
  // Reserved, and the number of directory sectors, always 0 with sectors of 512 bytes.
  bytes.append(10, '\0');
  appendNumber(bytes, at.tableSectors);
  appendNumber(bytes, at.directory);
  appendNumber(bytes, std::uint32_t{0});  // no transactions
  appendNumber(bytes, miniCutoff);
  appendNumber(bytes, at.isMini ? at.miniTable : endOfChain);
  appendNumber(bytes, at.table - at.miniTable);
  appendNumber(bytes, at.listSectors > 0 ? at.lists() : endOfChain);
  appendNumber(bytes, at.listSectors);
  appendTableNumbers(bytes, at, 0, numbersInHeader);
  return bytes;
}

void appendEntry(std::string& to, std::string_view name, std::uint8_t type, std::uint32_t child,
                 std::uint32_t first, std::size_t size) {
  constexpr std::uint8_t black = 1;
  const std::size_t start = to.size();
  for (const char16_t unit : toUtf16(name)) appendNumber(to, static_cast<std::uint16_t>(unit));
  to.append(start + entryNameLength - to.size(), '\0');
  // In bytes, with the NUL after the name.
  const std::size_t nameLength = name.empty() ? 0 : (name.size() + 1) * 2;
  appendNumber(to, static_cast<std::uint16_t>(nameLength));
  appendNumber(to, type);
  appendNumber(to, black);
  appendNumbers(to, freeSector, 2);  // no neighbours
  appendNumber(to, child);
  to.append(36, '\0');  // no class, state or times
  appendNumber(to, first);
  appendNumber(to, static_cast<std::uint64_t>(size));
}

std::string directory(const Layout& at, std::size_t streamLength) {
  std::string bytes;
  const std::size_t miniLength = at.miniSectors * miniSectorSize;
  // The root: its child is entry 1, and its own chain is that of the mini stream.
  appendEntry(bytes, "Root Entry", typeRoot, 1, at.isMini && miniLength > 0 ? 0 : endOfChain,
              miniLength);
  appendEntry(bytes, "Workbook", typeStream, freeSector, 0, streamLength);
  // Directories fill whole sectors with unused entries.
  while (bytes.size() < sectorSize) appendEntry(bytes, {}, 0, freeSector, 0, 0);
  return bytes;
}

std::string tables(const Layout& at) {
  std::string bytes;
  // First the mini table; then one number for each sector, in the order of Layout.
  appendChain(bytes, 0, at.miniSectors);
  fillSector(bytes);
  appendChain(bytes, 0, at.data);
  appendChain(bytes, at.directory, 1);
  appendChain(bytes, at.miniTable, at.table - at.miniTable);
  appendNumbers(bytes, tableSector, at.tableSectors);
  appendNumbers(bytes, tableListSector, at.listSectors);
  fillSector(bytes);
  std::size_t listed = numbersInHeader;
  for (std::uint32_t i = 1; i <= at.listSectors; ++i, listed += numbersInSector - 1) {
    appendTableNumbers(bytes, at, listed, numbersInSector - 1);
    appendNumber(bytes, i < at.listSectors ? at.lists() + i : endOfChain);
  }
  return bytes;
}

}  // namespace

void writeCompoundFile(OutputFile& to, std::string_view stream) {
  const Layout at(stream.size());
  to.write(header(at));
  to.write(stream);
  to.write(std::string(at.data * sectorSize - stream.size(), '\0'));
  to.write(directory(at, stream.size()));
  to.write(tables(at));
}

}  // namespace velk::xls
