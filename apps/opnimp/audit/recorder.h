// Sees everything that an import does: each call on the connection, each line of the error log and
// each message, stamped with the record that the screen was at. It is the proof of what the
// import says of itself (import_report.h), and the imports know nothing of it.
//
// It also ends a run at once when the connection is gone, so that records which were never looked
// up are not called unknown customers; and when the database does not answer in time, since whoever
// holds a lock would make each call of the rest wait as long.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/audit/call_times.h"
#include "apps/opnimp/audit/left_transactions.h"
#include "apps/opnimp/audit/run_gate.h"
#include "base/errors.h"
#include "mapping/import_screen.h"
#include "platform/database.h"
#include "platform/headless/message.h"
#include "shared/error_log.h"

namespace velk {

enum class CallKind {
  Query,
  Check,      ///< a procedure that only answers a question; it runs in a dry run, too
  Procedure,  ///< all others: they post
};
inline constexpr std::size_t callKindCount = 3;

enum class CallResult {
  Unknown,     ///< no answer came: it may or may not have taken effect
  Ok,          ///< it took effect
  Failed,      ///< it is known to have taken no effect
  InDoubt,     ///< it failed, and may have taken effect, in whole or in part
  FailedLate,  ///< a later statement of it failed: part of it may have taken effect
  NotRun,      ///< a dry run only records it
};
inline constexpr std::size_t callResultCount = static_cast<std::size_t>(CallResult::NotRun) + 1;

/// What became of the changes of a call.
enum class Changes {
  Stand,
  TakenBack,  ///< with the transaction that it ran in
  NotKnown,   ///< the transaction was ended by somebody else, or nobody knows how
};

struct CallError {
  std::int32_t number = 0;
  std::string description;
  std::vector<Diagnostic> diagnostics;
};

struct RecordedCall {
  std::size_t row = 0;  ///< of the mapping list; 0: the run as a whole
  CallKind kind = CallKind::Query;
  std::string text;  ///< the statement, or the procedure's name
  std::vector<Value> parameters;
  CallResult result = CallResult::Unknown;
  std::optional<CallError> error;
  Changes changes = Changes::Stand;
};

struct RecordedLine {
  enum class Kept { InMemory, InFile, NotWritten };
  std::size_t row = 0;
  std::string text;
  Kept kept = Kept::InMemory;
  std::string writeError;  ///< why it is not in the file
};

struct RecordedMessage {
  std::size_t row = 0;
  Message message;
};

/// Says of all calls that post what became of their changes.
void settleCalls(std::vector<RecordedCall>& calls, Changes changes);

/// Throws RunEnded after an error that leaves no sense in a further call: an interrupt, a lost
/// connection, a database that did not answer in time.
void endIfHopeless(const RuntimeError& error, const Connection& connection, RunGate& gate);

class Recorder : private ErrorLog {
 public:
  enum class Mode { Post, DryRun };

  /// Each call of the database passes the gate, which outlives the recorder.
  Recorder(Mode mode, RunGate& gate) : mode_(mode), gate_(gate) {}
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  /// Stamps from now on with the screen's current row, until endSession.
  void watch(const ImportScreen& screen) { screen_ = &screen; }
  /// What follows are the records behind the first `before` ones, on a screen of their own.
  void beginPart(std::size_t before) { before_ = before; }
  /// The screen and the error log's file are about to go.
  void endSession();
  std::size_t row() const {
    const std::size_t row = screen_ == nullptr ? 0 : screen_->currentRow();
    return row == 0 ? 0 : before_ + row;
  }

  /// The error log to hand to the module; lines go on to `file`, or stay in memory with null.
  ErrorLog& log(ErrorLog* file);
  /// The handler for the messages of desktop and host service; each goes on to `show`.
  MessageHandler messages(MessageHandler show);

  const std::vector<RecordedCall>& calls() const { return calls_; }
  const std::vector<RecordedLine>& lines() const { return lines_; }
  const std::vector<RecordedMessage>& shown() const { return messages_; }

  /// All calls that post run in one transaction from now on. After each of them `isOpen` is asked,
  /// and the run ended if it is not.
  void requireTransaction(std::function<bool()> isOpen) { transactionIsOpen_ = std::move(isOpen); }
  /// All calls stand by themselves, unless a procedure leaves a transaction open: `isOpen` asks.
  /// The run is ended then, and what may be lost is in doubt.
  void watchForLeft(std::function<bool()> isOpen) { left_.emplace(std::move(isOpen)); }
  /// Looks once more behind the last call; throws RunEnded.
  void lookForLeft();
  /// What became of that transaction.
  void settle(Changes changes);
  /// The records from that row on begin again, none of their calls having taken effect: these are
  /// forgotten, and what was logged and shown belongs to the run as a whole.
  void beginAgain(std::size_t row);
  /// Whether the last call of the record in that row stays is not known any more.
  void doubt(std::size_t row);
  /// Whether anything stays that was posted from that row on is not known any more.
  void doubtFrom(std::size_t row);
  Changes changes() const { return changes_; }

  RunGate& gate() { return gate_; }

  // For the wrapped connection.
  Mode mode() const { return mode_; }
  /// Notes that a call begins and answers its position in calls(). Throws RunEnded if the gate is
  /// closed.
  std::size_t beginCall(CallKind kind, std::string_view text, std::vector<Value> parameters);
  /// The same for a call that is sent along with one that was begun.
  std::size_t noteCall(CallKind kind, std::string_view text, std::vector<Value> parameters);
  /// The last call that was noted was not sent after all: nothing of it is noted. The one before it
  /// may have kept it from that by a transaction that it left open.
  void withdrawCall() {
    calls_.pop_back();
    isLeftLikely_ = true;
  }
  void setResult(std::size_t call, CallResult result) { calls_[call].result = result; }
  /// How long the database took for it.
  void addTime(std::size_t call, CallTimes::Duration took) {
    times_[static_cast<std::size_t>(calls_[call].kind)].add(took);
  }
  const CallTimes& times(std::size_t kind) const { return times_[kind]; }
  /// Notes that a call failed; one whose result is Ok until now, in a later statement of it. Throws
  /// RunEnded when nothing more can be asked.
  void callFailed(std::size_t call, const RuntimeError& error, const Connection& connection);
  /// Throws RunEnded when the call was to post in a transaction, and that is not open any more, or
  /// when it was not, and one is. Of calls that were sent together only the last one looks.
  void checkTransaction(std::size_t call);
  /// Notes that a call was refused before anything was sent.
  void callRefused(std::size_t call, const RuntimeError& error);

 private:
  /// Keeps each line, also one that the file does not take.
  void append(std::string_view line) override;

  void lookForLeftBy(std::size_t last);
  void endIfLeft(LeftTransactions::Found found, std::size_t first, std::size_t last);
  static CallResult resultOfFailure(const RecordedCall& call, const Connection& connection);

  const Mode mode_;
  RunGate& gate_;
  std::function<bool()> transactionIsOpen_;  // empty: each call stands by itself
  std::optional<LeftTransactions> left_;
  bool isLeftLikely_ = false;       // it is asked behind the next call
  std::size_t firstUnchecked_ = 0;  // of the calls, behind which left_ was not called yet
  const ImportScreen* screen_ = nullptr;
  std::size_t before_ = 0;
  Changes changes_ = Changes::Stand;  // of the calls that post
  std::vector<RecordedCall> calls_;
  std::array<CallTimes, callKindCount> times_;
  std::vector<RecordedLine> lines_;
  std::vector<RecordedMessage> messages_;
  ErrorLog* file_ = nullptr;  // of the error log
};

}  // namespace velk
