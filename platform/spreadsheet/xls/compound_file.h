// Compound files: a small file system within a file, in sectors that are chained by tables, as
// Microsoft's published document MS-CFB lays it out. This part reads them.
//
// The file is taken for hostile. Memory stays within a small multiple of its length, and every
// chain ends after at most as many steps as the file has sectors.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velk::xls {

/// A stream of the file: where its sectors follow each other a part of the file, else gathered.
class StreamBytes {
 public:
  explicit StreamBytes(std::string_view inFile) : inFile_(inFile) {}
  explicit StreamBytes(std::string gathered) : gathered_(std::move(gathered)) {}

  std::string_view view() const { return inFile_.data() == nullptr ? gathered_ : inFile_; }

 private:
  std::string_view inFile_;
  std::string gathered_;
};

/// Equal sectors and the table that tells which one follows which.
class SectorSpace {
 public:
  SectorSpace(std::string_view sectors, std::size_t sectorSize)
      : sectors_(sectors), sectorSize_(sectorSize) {}

  /// Number of sectors; the last one may be cut short.
  std::size_t count() const { return (sectors_.size() + sectorSize_ - 1) / sectorSize_; }
  std::string_view sector(std::uint32_t number) const;
  void appendToTable(std::string_view entries);
  std::size_t tableSize() const { return next_.size(); }

  /// The bytes of the chain that begins with a sector: `size` of them, or all. Damage unless the
  /// chain has as many sectors as it takes, and an end.
  StreamBytes chain(std::uint32_t first, std::optional<std::uint64_t> size = std::nullopt) const;

 private:
  std::uint32_t next(std::uint32_t sector) const;
  std::vector<std::uint32_t> sectorsOf(std::uint32_t first) const;

  std::string_view sectors_;
  std::size_t sectorSize_;
  std::vector<std::uint32_t> next_;
};

class CompoundFile {
 public:
  /// True when the bytes begin as every compound file does.
  static bool recognises(std::string_view bytes);

  /// The bytes have to live as long as this. Error 321 when tables or directory are damaged.
  explicit CompoundFile(std::string_view bytes);
  CompoundFile(const CompoundFile&) = delete;
  CompoundFile& operator=(const CompoundFile&) = delete;

  /// A stream of the root storage; its name has any letter case. Empty when there is none.
  std::optional<StreamBytes> stream(std::string_view name) const;

 private:
  struct Entry {
    std::string name;
    std::uint8_t type = 0;
    std::uint32_t left = 0;
    std::uint32_t right = 0;
    std::uint32_t child = 0;
    std::uint32_t first = 0;
    std::uint64_t size = 0;
  };

  void readTable(std::string_view header);
  void addTableSectors(std::string_view numbers);
  void readDirectory(std::uint32_t first);
  void readMiniStream(std::uint32_t firstTableSector);
  const Entry* find(std::string_view name) const;

  std::size_t sectorSize_;
  SectorSpace sectors_;
  std::vector<Entry> entries_;
  StreamBytes miniBytes_{std::string_view()};
  SectorSpace mini_{{}, 64};
};

}  // namespace velk::xls
