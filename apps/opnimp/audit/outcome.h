// What became of each record, derived from what the recorder saw.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/audit/recorder.h"

namespace velk {

enum class Outcome {
  Posted,
  PostedWithWarning,
  Skipped,     ///< zero amount
  Rejected,    ///< nothing was called that posts it
  Failed,      ///< no call took effect
  Partial,     ///< some did
  Unknown,     ///< a call had no answer
  NotReached,  ///< not even looked up
};
inline constexpr std::size_t outcomeCount = 8;

/// For reports, such as "posted with warning".
std::string_view outcomeName(Outcome outcome);
/// For programs, such as "posted-with-warning".
std::string_view outcomeCode(Outcome outcome);
/// Refused and failed: nothing of the record is in the database.
bool isRefused(Outcome outcome);
/// Partial and unknown: something of it may be.
bool isDoubtful(Outcome outcome);
bool isPosted(Outcome outcome);

/// Everything seen of one record. The pointers are into the recorder.
struct RecordTrace {
  std::vector<const RecordedCall*> calls;
  std::vector<const RecordedLine*> lines;
  std::vector<const RecordedMessage*> messages;
  bool runEndedHere = false;
  Outcome outcome = Outcome::NotReached;

  std::size_t procedureCalls() const;
};

/// A call that took effect, or would have in a dry run.
bool isEffective(const RecordedCall& call);

/// `warning`: how the log lines begin that only warn, and do not reject a record.
Outcome outcomeOf(const RecordTrace& trace, std::string_view warning);
/// Whether a person should look at the record: it was not posted, or not without a word.
bool needsAttention(const RecordTrace& trace);
/// Why a record needs attention; empty where there is nothing to say.
std::string reasonOf(const RecordTrace& trace);

struct Traces {
  std::vector<RecordTrace> records;  ///< one for each record of the file, in order
  /// Calls that belong to no record of the file although the screen stood on one, and procedures
  /// called for no record at all.
  std::vector<const RecordedCall*> strays;
  std::vector<const RecordedLine*> runLines;  ///< log lines of the run as a whole
  std::vector<const RecordedMessage*> runMessages;
};

/// Sorts what was recorded by record and finds each outcome. `endedAtRow`: the row of the mapping
/// list where the run broke off, 0 when it did not. `warning` as for outcomeOf.
Traces traceRecords(const Recorder& recorder, std::size_t recordCount, std::size_t endedAtRow,
                    std::string_view warning);

}  // namespace velk
