// What became of each record: what the import said of it, and, of what it called, what the recorder
// saw take effect.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

enum class Outcome {
  Posted,
  PostedWithWarning,
  PostedAsRead,       ///< accepted, although it is read otherwise than written
  Skipped,            ///< zero amount
  SkippedNotANumber,  ///< accepted, although its amount reads as 0
  Rejected,           ///< refused, or stopped by an error, before anything was called that posts it
  Failed,             ///< no call took effect, and that is known
  Partial,            ///< some did, or a part of one
  Unknown,            ///< whether any did is not known
  TakenBack,          ///< posted, and taken back because another record was at fault
  NotReached,         ///< not even looked up
};
inline constexpr std::size_t outcomeCount = static_cast<std::size_t>(Outcome::NotReached) + 1;

/// For reports, such as "posted with warning".
std::string_view outcomeName(Outcome outcome);
/// For programs, such as "posted-with-warning".
std::string_view outcomeCode(Outcome outcome);
/// Refused and failed: nothing of the record is in the database.
bool isRefused(Outcome outcome);
/// Partial and unknown: something of it may be.
bool isDoubtful(Outcome outcome);
bool isPosted(Outcome outcome);
bool isSkipped(Outcome outcome);

/// Everything said and seen of one record. The pointers are into report, recorder and
/// warnings.
struct RecordTrace {
  const RecordReport* said = nullptr;
  std::vector<const RecordedCall*> calls;
  std::vector<const RecordedLine*> lines;
  std::vector<const RecordedMessage*> messages;
  std::vector<const Misreading*> readings;  ///< what of it is read otherwise than written
  Outcome outcome = Outcome::NotReached;
  std::uint64_t laterRun = 0;  ///< the last run of the same file that reached it, too; 0: none
};

/// Whether nothing of the record is left to import, although this run did not post it: a later run
/// reached it.
bool isLeftToLater(const RecordTrace& trace);

/// How a record's calls that post ended.
struct Tally {
  std::size_t effective = 0;
  std::size_t failed = 0;
  std::size_t inDoubt = 0;
  std::size_t late = 0;
  std::size_t unknown = 0;
  std::size_t undone = 0;  ///< took effect, and were taken back

  std::size_t made() const { return effective + raised() + late + unknown + undone; }
  /// Those that the import saw fail.
  std::size_t raised() const { return failed + inDoubt; }
};
Tally tally(const RecordTrace& trace);

/// A call that took effect for good, or would have in a dry run.
bool isEffective(const RecordedCall& call);

Outcome outcomeOf(const RecordTrace& trace);
/// Whether a person should look at the record: it was not posted, or not without a word.
bool needsAttention(const RecordTrace& trace);
/// Why a record needs attention; empty where there is nothing to say.
std::string reasonOf(const RecordTrace& trace);

struct Traces {
  std::vector<RecordTrace> records;  ///< one for each record of the file, in order
  /// Calls that belong to no record of the file although the screen was at one, and procedures
  /// called for no record at all.
  std::vector<const RecordedCall*> strays;
  std::vector<const RecordedLine*> runLines;  ///< log lines of the run as a whole
  std::vector<const RecordedMessage*> runMessages;
};

/// Adds pointers to the items from a position on.
template <class Item>
void pointTo(std::vector<const Item*>& to, const std::vector<Item>& items, std::size_t from = 0) {
  for (; from < items.size(); ++from) to.push_back(&items[from]);
}

/// Adds to each record what is read of it otherwise than written.
void addReadings(std::vector<RecordTrace>& records, std::span<const Warning> warnings);

/// How many records need attention.
std::size_t needAttention(const Traces& traces);

/// Sorts what was warned of, said and recorded by record and finds each outcome.
Traces traceRecords(const ImportReport& report, const Recorder& recorder,
                    std::span<const Warning> warnings, std::size_t recordCount);

}  // namespace velk
