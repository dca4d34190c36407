// The report of an import as one JSON document.
#include <algorithm>
#include <ostream>

#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/report/json_writer.h"
#include "apps/opnimp/report/report_parts.h"
#include "base/text.h"

namespace velk {

namespace {

std::string_view kindCode(CallKind kind) {
  switch (kind) {
    case CallKind::Query:
      return "query";
    case CallKind::Check:
      return "check";
    case CallKind::Procedure:
      break;
  }
  return "procedure";
}

/// The calls of a record that have had their effect, by what they make.
std::string effectKey(std::string_view becomes) {
  std::string key = lowerAscii(becomes);
  std::ranges::replace(key, ' ', '-');
  return key;
}

std::string_view resultCode(CallResult result) {
  switch (result) {
    case CallResult::Ok:
      return "ok";
    case CallResult::Failed:
      return "failed";
    case CallResult::FailedLate:
      return "failed-late";
    case CallResult::NotRun:
      return "not-run";
    case CallResult::Unknown:
      break;
  }
  return "unknown";
}

std::string_view keptCode(RecordedLine::Kept kept) {
  switch (kept) {
    case RecordedLine::Kept::InFile:
      return "file";
    case RecordedLine::Kept::InMemory:
      return "memory";
    case RecordedLine::Kept::NotWritten:
      break;
  }
  return "not-written";
}

class JsonReport {
 public:
  JsonReport(const ImportResult& result, std::ostream& out) : result_(result), json_(out) {}

  void write() {
    json_.beginObject();
    writeHead();
    writeMapping(result_.mapping, json_);
    writeWarnings(result_.warnings, result_.input->placeWord(), json_);
    writeLines(result_.traces.runLines);
    writeMessages(result_.traces.runMessages);
    writeRecords();
    writeAccount();
    json_.member("rejectFiles", result_.rejectFiles);
    json_.member("next", nextSteps(result_));
    json_.endObject();
  }

 private:
  const ImportKind& kind() const { return *result_.arguments.kind; }

  void writeHead() {
    json_.member("command", "import");
    json_.member("kind", kind().name);
    json_.member("status", static_cast<int>(result_.status));
    json_.member("file", result_.arguments.file);
    json_.member("database", result_.database);
    json_.member("dryRun", result_.isDryRun());
    json_.memberOrNull("refused", result_.refusal);
    json_.memberOrNull("brokeOff", result_.brokeOff);
    json_.memberOrNull("rejectsError", result_.rejectsError);
    json_.member("errorLog", result_.errorLog);
  }

  void writeLines(const std::vector<const RecordedLine*>& lines) {
    json_.key("log");
    json_.beginArray();
    for (const RecordedLine* line : lines) {
      json_.beginObject();
      json_.member("text", line->text);
      json_.member("kept", keptCode(line->kept));
      if (!line->writeError.empty()) json_.member("error", line->writeError);
      json_.endObject();
    }
    json_.endArray();
  }

  void writeMessages(const std::vector<const RecordedMessage*>& messages) {
    json_.key("messages");
    json_.beginArray();
    for (const RecordedMessage* shown : messages) {
      json_.beginObject();
      json_.member("prompt", shown->message.prompt);
      json_.member("style", shown->message.style);
      if (shown->message.caption) json_.member("caption", *shown->message.caption);
      json_.member("throughHost", shown->message.throughHost);
      json_.endObject();
    }
    json_.endArray();
  }

  void writeRecords() {
    json_.key("records");
    json_.beginArray();
    for (std::size_t record = 0; record < result_.traces.records.size(); ++record) {
      const RecordTrace& trace = result_.traces.records[record];
      json_.beginObject();
      json_.member("record", record + 1);
      writePlace(result_.input->place(record));
      json_.member("outcome", outcomeCode(trace.outcome));
      json_.member("reason", reasonOf(trace));
      json_.key("calls");
      json_.beginArray();
      for (const RecordedCall* call : trace.calls) writeCall(*call);
      json_.endArray();
      writeLines(trace.lines);
      writeMessages(trace.messages);
      json_.endObject();
    }
    json_.endArray();
  }

  void writePlace(const RecordPlace& place) {
    json_.member(result_.input->placeWord(), place.line);
    if (place.length == 0) return;
    json_.member("offset", place.offset);
    json_.member("length", place.length);
  }

  void writeCall(const RecordedCall& call) {
    json_.beginObject();
    json_.member(kindCode(call.kind), call.text);
    if (call.kind != CallKind::Query) {
      json_.key("parameters");
      json_.beginArray();
      for (const Value& value : call.parameters) json_.value(value);
      json_.endArray();
    }
    json_.member("result", resultCode(call.result));
    if (call.error) writeError(*call.error);
    json_.endObject();
  }

  void writeError(const CallError& error) {
    json_.key("error");
    json_.beginObject();
    json_.member("number", error.number);
    json_.member("description", error.description);
    json_.key("diagnostics");
    json_.beginArray();
    for (const Diagnostic& diagnostic : error.diagnostics) {
      json_.beginObject();
      json_.member("state", diagnostic.state);
      json_.member("native", diagnostic.native);
      json_.member("message", diagnostic.message);
      json_.endObject();
    }
    json_.endArray();
    json_.endObject();
  }

  void writeSums(std::string_view name, const Sums& sums) {
    json_.key(name);
    json_.beginObject();
    json_.member("count", sums.count);
    if (kind().opening != nullptr) writeAmounts(sums);
    json_.endObject();
  }

  void writeAmounts(const Sums& sums) {
    json_.member("billDebit", static_cast<double>(sums.billDebit));
    json_.member("billCredit", static_cast<double>(sums.billCredit));
    json_.member("balanceDebit", static_cast<double>(sums.balanceDebit));
    json_.member("balanceCredit", static_cast<double>(sums.balanceCredit));
  }

  void writeAccount() {
    json_.key("account");
    if (result_.refused()) return json_.null();
    const Account& account = result_.account;
    json_.beginObject();
    json_.member("addsUp", account.addsUp());
    json_.member("fileRecords", account.fileRecords);
    json_.key("screenRecords");
    if (account.screenRecords) {
      json_.number(*account.screenRecords);
    } else {
      json_.null();
    }
    json_.member("unreadable", account.unreadable);
    json_.key("outcomes");
    json_.beginObject();
    for (std::size_t i = 0; i < outcomeCount; ++i) {
      writeSums(outcomeCode(static_cast<Outcome>(i)), account.byOutcome[i]);
    }
    json_.endObject();
    writeSums("file", account.file);
    writeSums(effectKey(kind().becomes[0]), account.notes);
    writeSums(effectKey(kind().becomes[1]), account.entries);
    json_.member("differenceCount", account.differenceCount);
    json_.member("differences", account.differences);
    json_.endObject();
  }

  const ImportResult& result_;
  JsonWriter json_;
};

}  // namespace

void writeJsonReport(const ImportResult& result, std::ostream& out) {
  JsonReport(result, out).write();
}

}  // namespace velk
