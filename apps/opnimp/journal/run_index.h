// The runs that a journal tells of, in short, and each of them in full.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "apps/opnimp/journal/journal_entries.h"
#include "apps/opnimp/journal/journal_file.h"

namespace velk {

/// What is not on the disk after a loss of power is at most what these many records made.
inline constexpr std::size_t recordsBetweenSyncs = 10'000;

/// One run without what its calls were.
struct RunSummary {
  RunStart start;
  std::size_t begun = 0;   ///< the first record that was not begun
  std::size_t synced = 0;  ///< the first record that did not end before the last sync
  std::vector<std::optional<Outcome>> outcomes;  ///< by record; empty: it did not end
  std::string history;     ///< of the server that it posted to last; empty: there is none to tell
  bool mayBeKept = false;  ///< the run was about to have its one transaction kept
  bool ended = false;      ///< the run said how it ended
  bool completed = false;
  bool refused = false;
  /// The machine was started anew since, so that the journal's end may be lost.
  bool powerLost = false;
  /// The first record that another server than the one it was posted to may lack.
  std::size_t doubted = std::numeric_limits<std::size_t>::max();

  /// Unknown for a record that was begun and did not end, or of which that may be lost.
  Outcome outcome(std::size_t record) const;
  /// Whether its one transaction was open when it was ended from outside: the database takes that
  /// back.
  bool isTakenBack() const;
  /// Whether what it did outside of the journal may be lost: the power failed before it was synced.
  bool mayBeUnsynced(std::size_t record) const { return powerLost && !ended && record >= synced; }
  /// Whether what it posted may be lost, by that or with a server.
  bool mayBeLost(std::size_t record) const { return mayBeUnsynced(record) || record >= doubted; }
  /// How many records have an outcome of a sort.
  std::size_t count(bool (*isOfSort)(Outcome)) const;
  /// The first record that was not begun for certain.
  std::size_t nextRecord() const;
  /// How many of its first records it reached, or may have. None if they were taken back: nothing
  /// of it stays.
  std::size_t reached() const;
};

/// What a run imports, as the journal knows it again.
struct KnownFile {
  std::string_view kind;
  std::string_view databaseId;
  Digest hash{};
  std::string_view sheet;  ///< of a workbook: another one is another file

  bool operator==(const KnownFile&) const = default;
};

KnownFile fileOf(const RunStart& run);

struct RunIndex {
  std::vector<RunSummary> runs;  ///< in the order of their numbers
  JournalEnd end;
  bool isRunning = false;  ///< the last of them is being written just now

  /// Null when there is none of that number.
  const RunSummary* find(std::uint64_t number) const;
  /// That run and all of the same file before it that it goes on with, the latest first: up to one
  /// that reached records which a later one reached again, as --again makes it.
  std::vector<const RunSummary*> takenUp(std::uint64_t number) const;
};

/// `machineStart`: as it is now. Errors: as readEntries.
RunIndex readIndex(const KeptFile& file, const std::string& machineStart);

/// One run in full.
struct JournaledRun {
  RunStart start;
  std::string fileBytes;           ///< what was imported, as it was
  std::vector<RecordEnd> records;  ///< those that ended
  std::vector<HostChange> hostChanges;
  std::optional<RunEnd> end;
};

/// Of a run that the index has. Errors: as readEntries.
JournaledRun readRun(const KeptFile& file, std::uint64_t number);

}  // namespace velk
