#include "platform/spreadsheet/xls/compound_file.h"

#include <algorithm>

#include "base/text.h"
#include "platform/spreadsheet/little_endian.h"
#include "platform/spreadsheet/xls/compound_layout.h"

namespace velk::xls {

namespace {

constexpr std::string_view cyclic = "its sectors are chained in a circle";

std::size_t sectorSizeOf(std::string_view bytes) {
  if (bytes.size() < headerSize) damaged("it ends within its header");
  const auto shift = loadNumber<std::uint16_t>(bytes.data() + headerSectorShift);
  // 512 bytes in version 3 of the format, 4096 in version 4.
  if (shift != 9 && shift != 12) damaged("its sectors have an impossible size");
  return std::size_t{1} << shift;
}

std::string nameOf(std::string_view entry) {
  const auto length = loadNumber<std::uint16_t>(entry.data() + entryNameLength);
  std::u16string name;
  // The length is in bytes and counts the NUL after the name.
  for (std::size_t i = 0; i + 2 < std::min<std::size_t>(length, entryNameLength); i += 2) {
    name += static_cast<char16_t>(loadNumber<std::uint16_t>(entry.data() + i));
  }
  return toUtf8(name);
}

}  // namespace

std::string_view SectorSpace::sector(std::uint32_t number) const {
  if (number >= count()) damaged("a sector lies behind its end");
  return sectors_.substr(number * sectorSize_, sectorSize_);
}

void SectorSpace::appendToTable(std::string_view entries) {
  for (std::size_t i = 0; i + 4 <= entries.size(); i += 4) {
    next_.push_back(loadNumber<std::uint32_t>(entries.data() + i));
  }
}

std::uint32_t SectorSpace::next(std::uint32_t sector) const {
  if (sector >= next_.size()) damaged("a sector is missing in the table of sectors");
  return next_[sector];
}

std::vector<std::uint32_t> SectorSpace::sectorsOf(std::uint32_t first) const {
  std::vector<std::uint32_t> numbers;
  for (std::uint32_t number = first; number != endOfChain; number = next(number)) {
    if (number >= count()) damaged("a sector lies behind its end");
    if (numbers.size() == count()) damaged(cyclic);
    numbers.push_back(number);
  }
  return numbers;
}

StreamBytes SectorSpace::chain(std::uint32_t first, std::optional<std::uint64_t> size) const {
  // Before anything else: the size is whatever the file claims.
  if (size.value_or(0) > sectors_.size()) damaged("a stream is longer than the file");
  if (size == 0) return StreamBytes(std::string());
  const std::vector<std::uint32_t> numbers = sectorsOf(first);
  const std::size_t length = size ? static_cast<std::size_t>(*size) : numbers.size() * sectorSize_;
  if (numbers.size() != (length + sectorSize_ - 1) / sectorSize_) {
    damaged("a stream has more or fewer sectors than its length");
  }
  // Nearly always; then hundreds of megabytes need not be copied.
  const auto isNext = [](std::uint32_t a, std::uint32_t b) { return a + 1 != b; };
  const bool isOnePiece = std::ranges::adjacent_find(numbers, isNext) == numbers.end();
  if (isOnePiece && first * sectorSize_ + length <= sectors_.size()) {
    return StreamBytes(sectors_.substr(first * sectorSize_, length));
  }
  std::string bytes;
  bytes.reserve(length);
  for (const std::uint32_t number : numbers) {
    const std::size_t wanted = std::min(sectorSize_, length - bytes.size());
    const std::string_view data = sector(number);
    if (data.size() < wanted) damaged("it ends too early");
    bytes.append(data.substr(0, wanted));
  }
  return StreamBytes(std::move(bytes));
}

bool CompoundFile::recognises(std::string_view bytes) {
  return bytes.starts_with(signature);
}

// Sector 0 follows the header, which takes a whole sector in both versions.
CompoundFile::CompoundFile(std::string_view bytes)
    : sectorSize_(sectorSizeOf(bytes)),
      sectors_(bytes.substr(std::min(sectorSize_, bytes.size())), sectorSize_) {
  const std::string_view header = bytes.substr(0, headerSize);
  if (loadNumber<std::uint32_t>(header.data() + headerMiniCutoff) != miniCutoff) {
    damaged("its header says otherwise where short streams are");
  }
  // In this order: each part is found with the help of the one before.
  readTable(header);
  readDirectory(loadNumber<std::uint32_t>(header.data() + headerFirstDirectory));
  readMiniStream(loadNumber<std::uint32_t>(header.data() + headerFirstMiniTable));
}

void CompoundFile::readTable(std::string_view header) {
  addTableSectors(header.substr(headerTable));
  auto more = loadNumber<std::uint32_t>(header.data() + headerFirstTableList);
  const auto lists = loadNumber<std::uint32_t>(header.data() + headerTableLists);
  for (std::uint32_t i = 0; i < lists && more < firstSpecialSector; ++i) {
    if (i >= sectors_.count()) damaged(cyclic);
    const std::string_view list = sectors_.sector(more);
    if (list.size() < sectorSize_) damaged("it ends too early");
    // The last number of a list names the next list.
    addTableSectors(list.substr(0, sectorSize_ - 4));
    more = loadNumber<std::uint32_t>(list.data() + sectorSize_ - 4);
  }
}

/// What would describe sectors beyond the file's end is not kept, so that a hostile file that names
/// the same table sector again and again takes no memory.
void CompoundFile::addTableSectors(std::string_view numbers) {
  FieldReader fields(numbers);
  while (fields.left() >= 4 && sectors_.tableSize() < sectors_.count()) {
    const std::uint32_t number = fields.u32();
    if (number < firstSpecialSector) sectors_.appendToTable(sectors_.sector(number));
  }
}

void CompoundFile::readDirectory(std::uint32_t first) {
  const StreamBytes chain = sectors_.chain(first);
  const std::string_view directory = chain.view();
  for (std::size_t at = 0; at + entrySize <= directory.size(); at += entrySize) {
    const std::string_view bytes = directory.substr(at, entrySize);
    Entry& entry = entries_.emplace_back();
    entry.name = nameOf(bytes);
    FieldReader fields(bytes.substr(entryType));
    entry.type = fields.u8();
    fields.skip(1);  // the colour in the tree
    entry.left = fields.u32();
    entry.right = fields.u32();
    entry.child = fields.u32();
    fields.skip(36);  // class, state and times
    entry.first = fields.u32();
    // In files of small sectors the upper half may hold anything.
    entry.size = sectorSize_ == 512 ? fields.u32() : fields.u64();
  }
  if (entries_.empty() || entries_[0].type != typeRoot) damaged("its directory has no root");
}

void CompoundFile::readMiniStream(std::uint32_t firstTableSector) {
  if (entries_[0].size == 0) return;
  // The chain of the root entry contains the mini sectors.
  miniBytes_ = sectors_.chain(entries_[0].first, entries_[0].size);
  mini_ = SectorSpace(miniBytes_.view(), miniSectorSize);
  mini_.appendToTable(sectors_.chain(firstTableSector).view());
}

/// Goes through the tree below the root in any order: not every writer sorts it as it should be,
/// and storages within the root may contain streams of the same name.
const CompoundFile::Entry* CompoundFile::find(std::string_view name) const {
  std::vector<bool> seen(entries_.size());
  std::vector<std::uint32_t> open{entries_[0].child};
  while (!open.empty()) {
    const std::uint32_t number = open.back();
    open.pop_back();
    if (number >= entries_.size() || seen[number]) continue;
    seen[number] = true;
    const Entry& entry = entries_[number];
    if (entry.type == typeStream && equalsIgnoringCase(entry.name, name)) return &entry;
    open.push_back(entry.left);
    open.push_back(entry.right);
  }
  return nullptr;
}

std::optional<StreamBytes> CompoundFile::stream(std::string_view name) const {
  const Entry* const entry = find(name);
  if (entry == nullptr) return std::nullopt;
  if (entry->size >= miniCutoff) return sectors_.chain(entry->first, entry->size);
  // Mini sectors may have been gathered, and then are gone with this object.
  return StreamBytes(std::string(mini_.chain(entry->first, entry->size).view()));
}

}  // namespace velk::xls
