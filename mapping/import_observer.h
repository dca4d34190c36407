// What an import says of itself while it runs: what became of each record, and of the run.
//
// The imports and the screens tell; nobody has to infer anything from messages, log lines or calls.
// The runner's account, progress and reports are built on it. Windows pass no observer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/errors.h"

namespace velk {

/// Why something is not taken as it stands.
enum class Reason : std::uint8_t {
  // A record is refused.
  UnknownParty,      ///< the database does not know the code
  DateUnreadable,    ///< the date cell holds no date
  DateTooLate,       ///< on or after the company's first transaction date
  DsTypeNotDefault,  ///< not a default value of its category
  DsTypeUnknown,     ///< not in the DS type master
  DsTypeInactive,    ///< in the master, but not in use
  // A record is posted all the same.
  BalanceAboveBill,  ///< more is open than was billed
  // A record is skipped.
  ZeroAmount,
  // A run is refused.
  ValueMissing,  ///< a record has no value in a field that needs one, or the field is not mapped
  WrongColumns,  ///< the file has another number of columns than its kind
  // View refuses a file.
  TooManyRecords,
  LongLine,         ///< a line is longer than any list of records has
  WrongCaptions,    ///< a workbook's first row does not hold the captions of its kind
  NoRecords,        ///< a workbook without data
  UnreadableFile,   ///< the file cannot be opened, or is no workbook
  CaptionMismatch,  ///< the database calls DS types by another caption
  CheckFailed,      ///< whether it does could not be asked
  // A mapping is refused.
  NoColumnChosen,  ///< a field was clicked before a file column
  EmptyValues,     ///< the field needs values, and the column lacks one
  // An export is refused.
  FileInUse,
};

/// One refusal, warning or skip, made where the rule stands. Log lines and messages are rendered
/// from it.
struct Finding {
  Reason reason;
  std::optional<std::size_t> field;  ///< of the mapping list, from 0; empty: no single field
  std::string text;                  ///< what was read there
  std::size_t count = 0;             ///< how many there are, where there are too many or too few
};

/// What a finding means for its record.
enum class Verdict : std::uint8_t {
  Refused,
  Skipped,  ///< not posted, and the log says nothing
  Warned,   ///< posted all the same
};

/// The calls that an import made to post one record, as it saw them end.
struct Posting {
  std::size_t calls = 0;
  std::size_t failed = 0;  ///< those that raised an error
  bool operator==(const Posting&) const = default;
};

/// `text` is in each case what the user reads: the log line or the message, word for word. Rows are
/// those of the mapping list. A member may throw to end the run, but no RuntimeError: error traps
/// would take it for a failure of the import.
class ImportObserver {
 public:
  virtual ~ImportObserver() = default;

  /// A view, a mapping, a run or an export is refused; nothing was posted. `row` is where, 0 if it
  /// is no single record's fault.
  virtual void refused(const Finding& /*why*/, std::size_t /*row*/, std::string_view /*text*/) {}

  // A run that is not refused is stopped by an error or ends.
  virtual void runStopped(const RuntimeError& /*error*/, std::string_view /*text*/) {}
  virtual void runEnded() {}

  // The current record begins, is refused or skipped or else posted, and ends.
  virtual void recordBegins(std::size_t /*row*/) {}
  virtual void recordFound(Verdict /*verdict*/, const Finding& /*why*/, std::string_view /*text*/) {
  }
  /// `posting` has no calls for a record that was refused or skipped.
  virtual void recordEnds(const Posting& /*posting*/) {}

  /// An error that ended a step and not the run; the log has it.
  virtual void errorTrapped(const RuntimeError& /*error*/, std::string_view /*text*/) {}
  virtual void exportWritten() {}

  /// True when calls are only recorded, so that nothing may be said to be posted.
  virtual bool isDryRun() const { return false; }
};

}  // namespace velk
