#include "apps/opnimp/audit/recorder.h"

#include <algorithm>
#include <utility>

#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/printable.h"

namespace velk {

void Recorder::append(std::string_view line) {
  // Kept before the file is tried: the report shows the lines that the file did not take.
  lines_.push_back({row(), std::string(line), {}, {}});
  if (file_ == nullptr) return;
  RecordedLine& kept = lines_.back();
  try {
    file_->append(line);
    kept.kept = RecordedLine::Kept::InFile;
  } catch (const RuntimeError& error) {
    kept.kept = RecordedLine::Kept::NotWritten;
    kept.writeError = error.description();
    // Passed on, because recording must change nothing for the import.
    throw;
  }
}

void Recorder::endSession() {
  // The recorder lives longer than the screen and the file.
  screen_ = nullptr;
  file_ = nullptr;
}

ErrorLog& Recorder::log(ErrorLog* file) {
  file_ = file;
  return *this;
}

MessageHandler Recorder::messages(MessageHandler show) {
  return [this, show = std::move(show)](const Message& message) {
    messages_.push_back({row(), message});
    show(message);
  };
}

std::size_t Recorder::beginCall(CallKind kind, std::string_view text,
                                std::vector<Value> parameters) {
  gate_.requireOpen();
  return noteCall(kind, text, std::move(parameters));
}

std::size_t Recorder::noteCall(CallKind kind, std::string_view text,
                               std::vector<Value> parameters) {
  // Noted before the call runs, with the result Unknown, which remains if no answer comes.
  calls_.push_back({row(), kind, std::string(text), std::move(parameters), {}, {}});
  return calls_.size() - 1;
}

void Recorder::callFailed(std::size_t call, const RuntimeError& error,
                          const Connection& connection) {
  RecordedCall& failed = calls_[call];
  failed.error = CallError{error.number(), error.description(), connection.diagnostics()};
  failed.result = resultOfFailure(failed, connection);
  endIfHopeless(error, connection, gate_);
  if (!connection.isSpent()) return;
  throw RunEnded{"the database can take nothing more (" +
                 std::string(withoutEnd(error.description())) + ")"};
}

// A procedure may end it, and then every later call would stand by itself.
void Recorder::checkTransaction(std::size_t call) {
  if (calls_[call].kind != CallKind::Procedure || call + 1 < calls_.size()) return;
  lookForLeftBy(call);
  if (!transactionIsOpen_ || gate_.pass(transactionIsOpen_)) return;
  settle(Changes::NotKnown);
  throw RunEnded{calls_[call].text +
                 " ended the transaction of --all-or-nothing; what was posted until then may stay"};
}

void Recorder::lookForLeftBy(std::size_t last) {
  if (!left_) return;
  // Look-ups before them do not count.
  while (calls_[firstUnchecked_].kind != CallKind::Procedure) ++firstUnchecked_;
  const std::size_t first = std::exchange(firstUnchecked_, last + 1);
  const bool failed =
      std::any_of(calls_.begin() + static_cast<std::ptrdiff_t>(first), calls_.end(),
                  [](const RecordedCall& call) { return call.result != CallResult::Ok; });
  const bool isLikely = std::exchange(isLeftLikely_, false) || failed;
  endIfLeft(gate_.pass([&] { return left_->afterCalls(last + 1 - first, isLikely); }), first, last);
}

void Recorder::lookForLeft() {
  const auto last =
      std::ranges::find(calls_.rbegin(), calls_.rend(), CallKind::Procedure, &RecordedCall::kind);
  if (!left_ || last == calls_.rend()) return;
  const auto position = static_cast<std::size_t>(calls_.rend() - last) - 1;
  endIfLeft(gate_.pass([&] { return left_->atEnd(); }), position, position);
}

// Of an earlier call it is not known which one, and what was said of them may be lost.
void Recorder::endIfLeft(LeftTransactions::Found found, std::size_t first, std::size_t last) {
  using Found = LeftTransactions::Found;
  if (found == Found::Nothing) return;
  const std::string what = " left a transaction open, in which what is posted may be lost";
  if (found == Found::OfAnEarlierCall) {
    settle(Changes::NotKnown);
    throw RunEnded{"a procedure" + what};
  }
  std::string callNames;
  for (std::size_t call = first; call <= last; ++call) {
    callNames += (call == first ? "" : " or ") + calls_[call].text;
    calls_[call].result = CallResult::InDoubt;
    calls_[call].error = CallError{static_cast<std::int32_t>(ErrorNumber::ProviderFailure),
                                   (first == last ? "it" : "one of two calls") + what,
                                   {}};
  }
  throw RunEnded{callNames + what};
}

void settleCalls(std::vector<RecordedCall>& calls, Changes changes) {
  for (RecordedCall& call : calls) {
    if (call.kind == CallKind::Procedure) call.changes = changes;
  }
}

void Recorder::settle(Changes changes) {
  changes_ = changes;
  settleCalls(calls_, changes);
}

void Recorder::beginAgain(std::size_t row) {
  std::erase_if(calls_, [&](const RecordedCall& call) { return call.row >= row; });
  firstUnchecked_ = std::min(firstUnchecked_, calls_.size());
  const auto detach = [&](auto& item) {
    if (item.row >= row) item.row = 0;
  };
  std::ranges::for_each(lines_, detach);
  std::ranges::for_each(messages_, detach);
}

void Recorder::doubt(std::size_t row) {
  const auto last = std::ranges::find(calls_.rbegin(), calls_.rend(), row, &RecordedCall::row);
  if (last != calls_.rend()) last->changes = Changes::NotKnown;
}

void Recorder::doubtFrom(std::size_t row) {
  for (RecordedCall& call : calls_) {
    if (call.kind == CallKind::Procedure && call.row >= row) call.changes = Changes::NotKnown;
  }
}

void Recorder::callRefused(std::size_t call, const RuntimeError& error) {
  calls_[call].error = CallError{error.number(), error.description(), {}};
  calls_[call].result = CallResult::Failed;
}

// On a lost connection nobody knows whether the call took effect, whatever the driver says of it.
CallResult Recorder::resultOfFailure(const RecordedCall& call, const Connection& connection) {
  if (connection.isLost()) return CallResult::Unknown;
  if (call.result == CallResult::Ok) return CallResult::FailedLate;
  const bool posts = call.kind == CallKind::Procedure;
  return posts && !connection.changedNothing() ? CallResult::InDoubt : CallResult::Failed;
}

void endIfHopeless(const RuntimeError& error, const Connection& connection, RunGate& gate) {
  // First, because the error is the interrupt's own.
  gate.requireOpen();
  if (connection.isLost()) {
    throw RunEnded{
        "the connection to the database was lost: " + std::string(withoutEnd(error.description())),
        true};
  }
  if (error.is(ErrorNumber::ProviderTimeout)) {
    throw RunEnded{"the database did not answer in time (" +
                   std::string(withoutEnd(error.description())) +
                   "); --wait SECONDS or --lock-wait SECONDS gives it longer"};
  }
}

}  // namespace velk
