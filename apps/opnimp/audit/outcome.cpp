#include "apps/opnimp/audit/outcome.h"

#include <algorithm>

namespace velk {

namespace {

struct OutcomeName {
  std::string_view name;
  std::string_view code;
};

// In the order of Outcome.
constexpr std::array<OutcomeName, outcomeCount> outcomeNames{{
    {"posted", "posted"},
    {"posted with warning", "posted-with-warning"},
    {"posted as read", "posted-as-read"},
    {"skipped (zero amount)", "skipped"},
    {"skipped: not a number", "skipped-not-a-number"},
    {"rejected", "rejected"},
    {"failed", "failed"},
    {"partial", "partial"},
    {"unknown", "unknown"},
    {"taken back", "taken-back"},
    {"not reached", "not-reached"},
}};

std::string errorText(const CallError& error) {
  return "(" + std::to_string(error.number) + "): " + error.description;
}

std::string_view changesText(Changes changes) {
  switch (changes) {
    case Changes::Stand:
      return "";
    case Changes::TakenBack:
      return " and was taken back";
    case Changes::NotKnown:
      break;
  }
  return ", and whether it stays is not known";
}

std::string resultText(const RecordedCall& call) {
  switch (call.result) {
    case CallResult::Ok:
      return std::string(call.text).append(" took effect").append(changesText(call.changes));
    case CallResult::NotRun:
      return call.text + " was not run";
    case CallResult::Failed:
      return call.text + " failed " + errorText(*call.error);
    case CallResult::InDoubt:
      return call.text + " failed, and whether it took effect is not known " +
             errorText(*call.error);
    case CallResult::FailedLate:
      return call.text + " may have taken effect in part, a later statement of it failed " +
             errorText(*call.error);
    case CallResult::Unknown:
      break;
  }
  return call.text + " had no answer: it may or may not have taken effect" +
         (call.error ? " " + errorText(*call.error) : "");
}

std::string uncheckedText(const RecordedCall& check) {
  const std::string type = check.parameters.empty() ? "his type" : toText(check.parameters[0]);
  return "whether " + type +
         " is a default value could not be checked, and the salesman is saved all the same";
}

/// In a transaction that was taken back even a call in doubt has changed nothing.
bool isTakenBack(const RecordTrace& trace) {
  return std::ranges::any_of(trace.calls, [](const RecordedCall* call) {
    return call->kind == CallKind::Procedure && call->changes == Changes::TakenBack;
  });
}

void add(std::string& reason, std::string_view text) {
  reason.append(reason.empty() ? "" : "; ").append(text);
}

}  // namespace

std::string_view outcomeName(Outcome outcome) {
  return outcomeNames[static_cast<std::size_t>(outcome)].name;
}

std::string_view outcomeCode(Outcome outcome) {
  return outcomeNames[static_cast<std::size_t>(outcome)].code;
}

bool isRefused(Outcome outcome) {
  return outcome == Outcome::Rejected || outcome == Outcome::Failed;
}

bool isDoubtful(Outcome outcome) {
  return outcome == Outcome::Partial || outcome == Outcome::Unknown;
}

bool isPosted(Outcome outcome) {
  return outcome == Outcome::Posted || outcome == Outcome::PostedWithWarning ||
         outcome == Outcome::PostedAsRead;
}

bool isSkipped(Outcome outcome) {
  return outcome == Outcome::Skipped || outcome == Outcome::SkippedNotANumber;
}

bool isLeftToLater(const RecordTrace& trace) {
  const Outcome outcome = trace.outcome;
  return trace.laterRun != 0 &&
         (isRefused(outcome) || outcome == Outcome::NotReached || outcome == Outcome::TakenBack);
}

bool isEffective(const RecordedCall& call) {
  return call.kind == CallKind::Procedure && call.changes == Changes::Stand &&
         (call.result == CallResult::Ok || call.result == CallResult::NotRun);
}

// What only asks has no effect, whatever came of it.
Tally tally(const RecordTrace& trace) {
  Tally t;
  for (const RecordedCall* call : trace.calls) {
    if (call->kind != CallKind::Procedure) continue;
    t.effective += isEffective(*call) ? 1U : 0U;
    t.failed += call->result == CallResult::Failed ? 1U : 0U;
    t.inDoubt += call->result == CallResult::InDoubt ? 1U : 0U;
    t.late += call->result == CallResult::FailedLate ? 1U : 0U;
    const bool lost = call->result == CallResult::Ok && call->changes == Changes::NotKnown;
    t.unknown += lost || call->result == CallResult::Unknown ? 1U : 0U;
    t.undone += call->result == CallResult::Ok && call->changes == Changes::TakenBack ? 1U : 0U;
  }
  return t;
}

// Where something was called that posts, what took effect decides; else the import's own word.
Outcome outcomeOf(const RecordTrace& trace) {
  using Fate = RecordReport::Fate;
  const Tally t = tally(trace);
  if (isTakenBack(trace)) return t.undone == t.made() ? Outcome::TakenBack : Outcome::Failed;
  // First, because one call without an answer leaves open what the others mean.
  if (t.unknown > 0) return Outcome::Unknown;
  const Fate fate = trace.said->fate;
  if (t.made() == 0) {
    if (fate == Fate::Refused || fate == Fate::Stopped) return Outcome::Rejected;
    // A record that was begun and cut off before its first call is as good as not reached.
    if (fate != Fate::Skipped) return Outcome::NotReached;
    const bool notANumber = std::ranges::any_of(trace.readings, &Misreading::skips);
    return notANumber ? Outcome::SkippedNotANumber : Outcome::Skipped;
  }
  // Calls that failed late are not among these, since part of them may have taken effect.
  if (t.failed == t.made()) return Outcome::Failed;
  if (t.raised() == t.made()) return Outcome::Unknown;
  const bool cutShort = fate != Fate::Posted;
  if (t.raised() > 0 || t.late > 0 || cutShort) return Outcome::Partial;
  if (!trace.readings.empty()) return Outcome::PostedAsRead;
  return trace.said->warned ? Outcome::PostedWithWarning : Outcome::Posted;
}

bool needsAttention(const RecordTrace& trace) {
  return isRefused(trace.outcome) || isDoubtful(trace.outcome) ||
         (isPosted(trace.outcome) && trace.outcome != Outcome::Posted) ||
         trace.outcome == Outcome::SkippedNotANumber ||
         (trace.outcome == Outcome::Skipped && (trace.said->warned || !trace.readings.empty()));
}

std::size_t needAttention(const Traces& traces) {
  return static_cast<std::size_t>(std::ranges::count_if(traces.records, needsAttention));
}

// The recorder's results come first, since they name the procedure; then the import's own words.
std::string reasonOf(const RecordTrace& trace) {
  std::string reason;
  const bool explained = isRefused(trace.outcome) || isDoubtful(trace.outcome);
  for (const RecordedCall* call : trace.calls) {
    if (call->kind == CallKind::Procedure && explained) add(reason, resultText(*call));
    if (call->kind == CallKind::Procedure || !call->error) continue;
    // The only check of a record is that of a salesman's type, and one that fails lets him pass.
    if (call->kind == CallKind::Check && isPosted(trace.outcome)) add(reason, uncheckedText(*call));
    add(reason, "the look-up failed " + errorText(*call->error));
  }
  for (const std::string& text : trace.said->texts) add(reason, text);
  // Of a record that was not even begun, nothing was read.
  if (trace.outcome == Outcome::NotReached) return reason;
  for (const Misreading* each : trace.readings) {
    Misreading reading = *each;
    // What was refused is not skipped.
    reading.skips = reading.skips && !isRefused(trace.outcome);
    add(reason, sentenceOf(reading));
  }
  return reason;
}

void addReadings(std::vector<RecordTrace>& records, std::span<const Warning> warnings) {
  for (const Warning& warning : warnings) {
    for (const Misreading& reading : warning.readings) {
      records.at(reading.record).readings.push_back(&reading);
    }
  }
}

// A row beyond the file's records is nobody's: the account shows it as a stray.
Traces traceRecords(const ImportReport& report, const Recorder& recorder,
                    std::span<const Warning> warnings, std::size_t recordCount) {
  Traces traces;
  traces.records.resize(recordCount);
  const auto recordAt = [&](std::size_t row) -> RecordTrace* {
    const bool within = row >= ImportScreen::firstDataRow &&
                        row - ImportScreen::firstDataRow < traces.records.size();
    return within ? &traces.records[row - ImportScreen::firstDataRow] : nullptr;
  };
  for (const RecordedCall& call : recorder.calls()) {
    if (RecordTrace* record = recordAt(call.row)) {
      // A pointer is enough, because the run is over and the recorder gets no further calls.
      record->calls.push_back(&call);
    } else if (call.row != 0 || call.kind == CallKind::Procedure) {
      traces.strays.push_back(&call);
    }
  }
  for (const RecordedLine& line : recorder.lines()) {
    RecordTrace* record = recordAt(line.row);
    (record != nullptr ? record->lines : traces.runLines).push_back(&line);
  }
  for (const RecordedMessage& message : recorder.shown()) {
    RecordTrace* record = recordAt(message.row);
    (record != nullptr ? record->messages : traces.runMessages).push_back(&message);
  }
  addReadings(traces.records, warnings);
  for (std::size_t position = 0; position < recordCount; ++position) {
    RecordTrace& record = traces.records[position];
    // Only now, because an outcome is made from all the calls collected above.
    record.said = &report.record(position);
    record.outcome = outcomeOf(record);
  }
  return traces;
}

}  // namespace velk
