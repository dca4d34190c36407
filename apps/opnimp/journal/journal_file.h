// The journal as a file of entries, each with its length, its type and a checksum; docs/journal.md
// tells of the format. What the entries say is not its matter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/kept_file.h"

namespace velk {

enum class EntryType : std::uint8_t {
  RunBegun = 1,
  RecordBegun,
  RecordEnded,
  RunEnded,
  Synced,        ///< all entries before it were, or it would not be there
  OthersSynced,  ///< so was what the entries before it tell of, in other files
  HostChanged,
  RecordsDoubted,
  ServerHistory,
  MayBeKept  ///< the transaction of the whole run
};

/// Where the whole entries end, and what follows them.
struct JournalEnd {
  std::uint64_t whole = 0;  ///< bytes, the last whole entry included
  std::uint64_t torn = 0;   ///< bytes behind them, zeros at the end not counted
  bool damaged = false;     ///< the torn bytes had been on the disk whole: no end, but damage
};

/// Calls `take` with each whole entry in order, but not for the marks of what was synced. Errors:
/// files.h; 321 for a file that is no journal.
using TakeEntry = std::function<void(EntryType type, std::string_view payload)>;
JournalEnd readEntries(const KeptFile& file, const TakeEntry& take);

class JournalFile {
 public:
  /// Begins to add behind the whole entries that `end` tells of; what is torn goes.
  JournalFile(std::unique_ptr<KeptFile> file, const JournalEnd& end);

  /// Adds an entry that is written with the next one.
  void add(EntryType type, std::string_view payload);
  /// Writes it, and what was added before it, in one write. After a failure nothing of all that is
  /// there, if the disk allows, and this entry is forgotten.
  void write(EntryType type, std::string_view payload);
  /// Writes a long entry, whose payload comes in pieces that are not copied. Half of it, which a
  /// kill leaves, is known as torn.
  void writeLong(EntryType type, std::span<const std::string_view> payload);
  /// Waits until the disk has all that was written, and marks that it has.
  void sync();

 private:
  /// Adds to the file what was pending and then the bytes, or nothing.
  void append(std::span<const std::string_view> bytes);

  std::unique_ptr<KeptFile> file_;
  std::uint64_t length_;
  std::string pending_;    // entries that are not written yet
  bool isBroken_ = false;  // nothing that is written now could be marked as being there
};

}  // namespace velk
