// Writes a run to the journal while it goes on: that a record begins before its first call, and
// what became of it before the next one begins.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "apps/opnimp/journal/journal_entries.h"
#include "apps/opnimp/journal/journal_file.h"

namespace velk {

/// A record begins when the last sync is as long ago, or as many records (run_index.h), only after
/// the next one.
inline constexpr std::chrono::milliseconds timeBetweenSyncs{1000};

class RunJournal {
 public:
  /// Begins the import of a file with these bytes; the journal's file lives as long. What is synced
  /// tells of what is written elsewhere: `syncOthers` waits until the disk has that. Errors here as
  /// in all that follows: files.h.
  RunJournal(JournalFile& file, const RunStart& run, std::string_view fileBytes,
             std::function<void()> syncOthers);

  void recordBegins(std::size_t record);
  /// The records from the first one on up to the last one have begun, and what was said of them
  /// and of those behind counts no more.
  void recordsBeginAgain(std::size_t first, std::size_t last);
  /// It is written before the next record begins.
  void recordEnds(std::size_t record, const RecordTrace& trace);
  void hostChanges(const HostChange& change);
  /// What the server that is posted to answers another time only if it has lost nothing since.
  void serverHas(std::string_view history);
  /// What the run has posted in one transaction may be kept from now on; before, a kill leaves
  /// nothing of it. Waits until the disk has that.
  void mayBeKept();
  void runEnds(const RunEnd& end);
  /// Of the run of that number, which has ended.
  void recordsDoubted(std::uint64_t run, std::size_t first);

 private:
  using Clock = std::chrono::steady_clock;

  void syncWhenDue();
  void sync();

  JournalFile& file_;
  std::function<void()> syncOthers_;
  EntryWriter writer_;
  std::size_t sinceSync_ = 0;  // records begun
  Clock::time_point lastSync_;
};

}  // namespace velk
