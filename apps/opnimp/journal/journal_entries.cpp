#include "apps/opnimp/journal/journal_entries.h"

#include <algorithm>
#include <tuple>

#include "base/errors.h"

namespace velk {

namespace {

template <class Enum>
void writeEnum(EntryWriter& to, Enum value) {
  to.byte(static_cast<std::uint8_t>(value));
}

/// `last`: the greatest value that there is.
template <class Enum>
Enum readEnum(EntryReader& from, Enum last) {
  const std::uint8_t value = from.byte();
  if (value > static_cast<std::uint8_t>(last)) throw RuntimeError(ErrorNumber::InvalidFileFormat);
  return static_cast<Enum>(value);
}

bool readFlag(EntryReader& from) {
  return from.byte() != 0;
}

// As its code, which stays the same when further outcomes are added.
Outcome readOutcome(EntryReader& from) {
  const std::string code = from.text();
  for (std::size_t i = 0; i < outcomeCount; ++i) {
    if (outcomeCode(static_cast<Outcome>(i)) == code) return static_cast<Outcome>(i);
  }
  throw RuntimeError(ErrorNumber::InvalidFileFormat);
}

Digest readDigest(EntryReader& from) {
  Digest digest{};
  std::ranges::copy(from.bytes(digest.size()), digest.begin());
  return digest;
}

void writeDigest(EntryWriter& to, const Digest& digest) {
  to.bytes({reinterpret_cast<const char*>(digest.data()), digest.size()});
}

// 0: none, else one more.
template <class Number>
void writeOptional(EntryWriter& to, const std::optional<Number>& number) {
  to.number(number ? static_cast<std::uint64_t>(*number) + 1 : 0);
}

template <class Number>
std::optional<Number> readOptional(EntryReader& from) {
  const std::uint64_t number = from.number();
  if (number == 0) return std::nullopt;
  const auto value = static_cast<Number>(number - 1);
  if (static_cast<std::uint64_t>(value) != number - 1) {
    throw RuntimeError(ErrorNumber::InvalidFileFormat);
  }
  return value;
}

void writeError(EntryWriter& to, const CallError& error) {
  to.number(static_cast<std::uint32_t>(error.number)).text(error.description);
  to.list(error.diagnostics, [](EntryWriter& each, const Diagnostic& diagnostic) {
    each.text(diagnostic.state).number(static_cast<std::uint32_t>(diagnostic.native));
    each.text(diagnostic.message);
  });
}

std::int32_t readInteger(EntryReader& from) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(from.number()));
}

CallError readError(EntryReader& from) {
  CallError error;
  error.number = readInteger(from);
  error.description = from.text();
  error.diagnostics = from.list<Diagnostic>([](EntryReader& each) {
    Diagnostic diagnostic;
    diagnostic.state = each.text();
    diagnostic.native = readInteger(each);
    diagnostic.message = each.text();
    return diagnostic;
  });
  return error;
}

void writeCall(EntryWriter& to, const RecordedCall& call) {
  to.number(call.row);
  writeEnum(to, call.kind);
  to.text(call.text);
  to.list(call.parameters, [](EntryWriter& each, const Value& value) { each.value(value); });
  writeEnum(to, call.result);
  to.byte(call.error ? 1 : 0);
  if (call.error) writeError(to, *call.error);
}

RecordedCall readCall(EntryReader& from) {
  RecordedCall call;
  call.row = from.count();
  call.kind = readEnum(from, CallKind::Procedure);
  call.text = from.text();
  call.parameters = from.list<Value>([](EntryReader& each) { return each.value(); });
  call.result = readEnum(from, CallResult::NotRun);
  if (readFlag(from)) call.error = readError(from);
  return call;
}

void writeLogLine(EntryWriter& to, const RecordedLine& line) {
  to.number(line.row).text(line.text);
  writeEnum(to, line.kept);
  to.text(line.writeError);
}

RecordedLine readLine(EntryReader& from) {
  RecordedLine line;
  line.row = from.count();
  line.text = from.text();
  line.kept = readEnum(from, RecordedLine::Kept::NotWritten);
  line.writeError = from.text();
  return line;
}

void writeMessage(EntryWriter& to, const RecordedMessage& shown) {
  const Message& message = shown.message;
  to.number(shown.row).text(message.prompt).number(static_cast<std::uint32_t>(message.style));
  to.byte(message.caption ? 1 : 0).text(message.caption.value_or(""));
  to.byte(message.throughHost ? 1 : 0);
}

RecordedMessage readMessage(EntryReader& from) {
  RecordedMessage shown;
  shown.row = from.count();
  shown.message.prompt = from.text();
  shown.message.style = readInteger(from);
  const bool hasCaption = readFlag(from);
  const std::string caption = from.text();
  if (hasCaption) shown.message.caption = caption;
  shown.message.throughHost = readFlag(from);
  return shown;
}

void writeTexts(EntryWriter& to, const std::vector<std::string>& texts) {
  to.list(texts, [](EntryWriter& each, const std::string& text) { each.text(text); });
}

std::vector<std::string> readTexts(EntryReader& from) {
  return from.list<std::string>([](EntryReader& each) { return each.text(); });
}

void writeSaid(EntryWriter& to, const RecordReport& said) {
  writeEnum(to, said.fate);
  to.byte(said.warned ? 1 : 0).number(said.posting.calls).number(said.posting.failed);
  writeTexts(to, said.texts);
}

RecordReport readSaid(EntryReader& from) {
  RecordReport said;
  said.fate = readEnum(from, RecordReport::Fate::Posted);
  said.warned = readFlag(from);
  said.posting.calls = from.count();
  said.posting.failed = from.count();
  said.texts = readTexts(from);
  return said;
}

void writeField(EntryWriter& to, const FieldMapping& entry) {
  to.text(entry.field);
  writeOptional(to, entry.column);
  to.text(entry.title);
}

FieldMapping readField(EntryReader& from) {
  FieldMapping entry;
  entry.field = from.text();
  entry.column = readOptional<std::size_t>(from);
  entry.title = from.text();
  return entry;
}

std::vector<Assumption> readAssumed(EntryReader& from) {
  return from.list<Assumption>([](EntryReader& each) {
    Assumption assumption;
    for (std::string* text :
         {&assumption.what, &assumption.value, &assumption.reason, &assumption.option}) {
      *text = each.text();
    }
    return assumption;
  });
}

void writeRevised(EntryWriter& to, const std::pair<std::size_t, Outcome>& revised) {
  to.number(revised.first).text(outcomeCode(revised.second));
}

}  // namespace

// The file's bytes are a text like others, whose length stands before it.
void writeBeforeFile(EntryWriter& to, const RunStart& run, std::size_t fileBytes) {
  constexpr std::size_t aboutRest = 4096;
  to.reserve(run.records.size() * sizeof(JournaledRecord) + aboutRest);
  to.number(run.number).real(run.time.days);
  to.text(run.user).text(run.version).text(run.machineStart).text(run.kind);
  to.text(run.folder).text(run.file);
  writeDigest(to, run.fileHash);
  to.text(run.database).text(run.databaseId).text(run.errorLog);
  writeTexts(to, run.accepted);
  to.list(run.mapping, writeField);
  to.byte(run.oneTransaction ? 1 : 0);
  to.number(run.resumes).number(run.firstRecord);
  to.list(run.setApart, [](EntryWriter& each, std::size_t record) { each.number(record); });
  to.list(run.records, [](EntryWriter& each, const JournaledRecord& record) {
    each.number(record.line);
    writeDigest(each, record.hash);
  });
  to.number(fileBytes);
}

void writeBehindFile(EntryWriter& to, const RunStart& run) {
  to.list(run.assumed, [](EntryWriter& each, const Assumption& assumption) {
    each.text(assumption.what).text(assumption.value).text(assumption.reason);
    each.text(assumption.option);
  });
  to.byte(run.undated ? 1 : 0);
  if (run.undated) to.real(run.undated->days);
}

void readBehindFile(EntryReader& from, RunStart& run) {
  if (!from.isAtEnd()) run.assumed = readAssumed(from);
  run.isEarly = from.isAtEnd();
  if (!run.isEarly && readFlag(from)) run.undated = Date{from.real()};
}

RunStart readRunStart(EntryReader& from) {
  RunStart run;
  run.number = from.number();
  run.time = Date{from.real()};
  for (std::string* text :
       {&run.user, &run.version, &run.machineStart, &run.kind, &run.folder, &run.file}) {
    *text = from.text();
  }
  run.fileHash = readDigest(from);
  for (std::string* text : {&run.database, &run.databaseId, &run.errorLog}) *text = from.text();
  run.accepted = readTexts(from);
  run.mapping = from.list<FieldMapping>(readField);
  run.oneTransaction = readFlag(from);
  run.resumes = from.number();
  run.firstRecord = from.count();
  run.setApart = from.list<std::size_t>([](EntryReader& each) { return each.count(); });
  run.records = from.list<JournaledRecord>([](EntryReader& each) {
    JournaledRecord record;
    record.line = each.count();
    record.hash = readDigest(each);
    return record;
  });
  return run;
}

void writeRecordEnd(EntryWriter& to, std::size_t record, const RecordTrace& trace) {
  writeRevised(to, {record, trace.outcome});
  writeSaid(to, *trace.said);
  const auto each = [](auto writeItem) {
    return [writeItem](EntryWriter& item, const auto* pointer) { writeItem(item, *pointer); };
  };
  to.list(trace.calls, each(writeCall));
  to.list(trace.lines, each(writeLogLine));
  to.list(trace.messages, each(writeMessage));
}

std::pair<std::size_t, Outcome> readRecordOutcome(EntryReader& from) {
  const std::size_t record = from.count();
  return {record, readOutcome(from)};
}

RecordEnd readRecordEnd(EntryReader from) {
  RecordEnd end;
  std::tie(end.record, end.outcome) = readRecordOutcome(from);
  end.said = readSaid(from);
  end.calls = from.list<RecordedCall>(readCall);
  end.lines = from.list<RecordedLine>(readLine);
  end.messages = from.list<RecordedMessage>(readMessage);
  return end;
}

void write(EntryWriter& to, const HostChange& change) {
  to.number(change.record).text(change.from).text(change.to).text(change.why).text(change.found);
}

HostChange readHostChange(EntryReader from) {
  HostChange change;
  change.record = from.count();
  for (std::string* text : {&change.from, &change.to, &change.why, &change.found}) {
    *text = from.text();
  }
  return change;
}

void write(EntryWriter& to, const RunEnd& run) {
  to.real(run.time.days).byte(run.completed ? 1 : 0);
  writeOptional(to, run.screenRecords);
  writeEnum(to, run.changes);
  to.text(run.refusal).text(run.brokeOff);
  to.list(run.revised, writeRevised);
  to.list(run.strays, writeCall).list(run.lines, writeLogLine).list(run.messages, writeMessage);
}

RunEnd readRunEnd(EntryReader from) {
  RunEnd run;
  run.time = Date{from.real()};
  run.completed = readFlag(from);
  run.screenRecords = readOptional<long long>(from);
  run.changes = readEnum(from, Changes::NotKnown);
  run.refusal = from.text();
  run.brokeOff = from.text();
  run.revised = from.list<std::pair<std::size_t, Outcome>>(readRecordOutcome);
  run.strays = from.list<RecordedCall>(readCall);
  run.lines = from.list<RecordedLine>(readLine);
  run.messages = from.list<RecordedMessage>(readMessage);
  return run;
}

}  // namespace velk
