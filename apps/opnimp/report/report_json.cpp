#include "apps/opnimp/report/report_json.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <span>
#include <utility>

#include "apps/opnimp/records/later_records.h"
#include "apps/opnimp/report/json_document.h"
#include "base/text.h"

namespace velk {

namespace {

// In the order of Changes and RecordedLine::Kept.
constexpr std::array changesCodes{"stand", "taken-back", "not-known"};
constexpr std::array keptCodes{"memory", "file", "not-written"};

std::string codeOf(std::span<const char* const> codes, auto value) {
  return codes[static_cast<std::size_t>(value)];
}

template <class Items, class Make>
Json listOf(const Items& items, Make make) {
  Json list = Json::array();
  for (const auto& item : items) list.push_back(make(item));
  return list;
}

/// The key of what the calls of records have made.
std::string effectKey(std::string_view becomes) {
  std::string key = lowerAscii(becomes);
  std::ranges::replace(key, ' ', '-');
  return key;
}

// The library writes whole doubles with ".0", which some readers take for another type.
Json number(double number) {
  // Up to this number a double can represent every whole number.
  constexpr double largestWhole = 1LL << std::numeric_limits<double>::digits;
  const bool whole = std::abs(number) <= largestWhole && number == std::trunc(number);
  return whole ? Json(static_cast<long long>(number)) : Json(number);
}

/// A date is a text such as "2008-03-31 00:00:00".
Json valueJson(const Value& value) {
  if (isNull(value)) return nullptr;
  if (const auto* integer = std::get_if<std::int32_t>(&value)) return *integer;
  if (const auto* real = std::get_if<double>(&value)) return number(*real);
  if (const auto* date = std::get_if<Date>(&value)) return formatIso(*date);
  return std::get<std::string>(value);
}

Json errorJson(const CallError& error) {
  return {{"number", error.number},
          {"description", error.description},
          {"diagnostics", listOf(error.diagnostics, [](const Diagnostic& diagnostic) {
             return Json{{"state", diagnostic.state},
                         {"native", diagnostic.native},
                         {"message", diagnostic.message}};
           })}};
}

// The key is the kind of call, its value the statement or the name of the procedure.
Json callJson(const RecordedCall* call) {
  Json json{{std::string(codeOf(call->kind)), call->text}};
  if (call->kind != CallKind::Query) json["parameters"] = listOf(call->parameters, valueJson);
  json["result"] = codeOf(call->result);
  if (call->changes != Changes::Stand) json["changes"] = codeOf(changesCodes, call->changes);
  if (call->error) json["error"] = errorJson(*call->error);
  return json;
}

Json lineJson(const RecordedLine* line) {
  Json json{{"text", line->text}, {"kept", codeOf(keptCodes, line->kept)}};
  if (!line->writeError.empty()) json["error"] = line->writeError;
  return json;
}

Json messageJson(const RecordedMessage* shown) {
  Json json{{"prompt", shown->message.prompt}, {"style", shown->message.style}};
  if (shown->message.caption) json["caption"] = *shown->message.caption;
  json["throughHost"] = shown->message.throughHost;
  return json;
}

Json recordJson(const ImportResult& result, std::size_t record) {
  const RecordTrace& trace = result.traces.records[record];
  const RecordPlace place = result.input->place(record);
  Json json{{"record", record + 1}, {std::string(result.input->placeWord()), place.line}};
  // Rows of a workbook have no bytes of their own.
  if (place.length != 0) {
    json["offset"] = place.offset;
    json["length"] = place.length;
  }
  json["outcome"] = outcomeCode(trace.outcome);
  json["reason"] = reasonOf(trace);
  json["calls"] = listOf(trace.calls, callJson);
  json["log"] = listOf(trace.lines, lineJson);
  json["messages"] = listOf(trace.messages, messageJson);
  return json;
}

Json sumsJson(const Sums& sums, bool amounts) {
  Json json{{"count", sums.count}};
  if (!amounts) return json;
  json["billDebit"] = number(static_cast<double>(sums.billDebit));
  json["billCredit"] = number(static_cast<double>(sums.billCredit));
  json["balanceDebit"] = number(static_cast<double>(sums.balanceDebit));
  json["balanceCredit"] = number(static_cast<double>(sums.balanceCredit));
  return json;
}

Json accountJson(const Account& account, const ImportKind& kind) {
  const bool amounts = kind.opening != nullptr;
  Json outcomes;
  for (std::size_t i = 0; i < outcomeCount; ++i) {
    outcomes[std::string(outcomeCode(static_cast<Outcome>(i)))] =
        sumsJson(account.byOutcome[i], amounts);
  }
  return {{"addsUp", account.addsUp()},
          {"fileRecords", account.fileRecords},
          {"screenRecords", account.screenRecords ? Json(*account.screenRecords) : Json()},
          {"unreadable", account.unreadable},
          {"outcomes", std::move(outcomes)},
          {"file", sumsJson(account.file, amounts)},
          {effectKey(kind.becomes[0]), sumsJson(account.notes, amounts)},
          {effectKey(kind.becomes[1]), sumsJson(account.entries, amounts)},
          {"differenceCount", account.differenceCount},
          {"differences", account.differences}};
}

// One at a time: the records of a long file as one document would take many times its memory.
void writeRecords(const ImportResult& result, std::ostream& out) {
  out << "\"records\":[";
  for (std::size_t record = 0; record < result.traces.records.size(); ++record) {
    out << (record == 0 ? "" : ",") << textOf(recordJson(result, record));
  }
  out << ']';
}

/// Null for a run of the whole file.
Json partJson(const InputRecords& input) {
  const LaterRecords* const part = asPart(input);
  if (part == nullptr) return nullptr;
  return {{std::string(part->placeWord()), part->place(0).line},
          {"records", part->count()},
          {"of", part->whole().count()}};
}

Json changeJson(const HostChange& change) {
  return {{"record", change.record},
          {"from", change.from},
          {"to", change.to},
          {"why", change.why},
          {"found", orNull(change.found)}};
}

Json headJson(const ImportResult& result) {
  return {
      {"command", "import"},
      {"kind", result.arguments.kind->name},
      {"status", result.status()},
      {"file", result.arguments.file},
      {"sha256", orNull(result.fileHash)},
      {"began", formatIso(result.began)},
      {"user", result.user},
      {"database", result.database},
      {"dryRun", result.isDryRun()},
      {"accepted", result.arguments.accept},
      {"refused", orNull(result.refusal)},
      {"brokeOff", orNull(result.brokeOff)},
      {"repeatedCalls", result.repeatedCalls},
      {"hostChanges", listOf(result.hostChanges, changeJson)},
      {"rejectsError", orNull(result.rejectsError)},
      {"noLookAhead", orNull(result.noLookAhead)},
      {"errorLog", result.errorLog},
      {"journal", orNull(result.journal)},
      {"run", result.run == 0 ? Json() : Json(result.run)},
      {"resumes", result.resumes == 0 ? Json() : Json(result.resumes)},
      {"passedOver", result.passedOver},
      {"serverReplaced", result.serverReplaced},
      {"setApart", result.setApart.size()},
      {"leftOut", result.leftOut},
      {"refusedBefore", listOf(result.refusedBefore,
                               [](const RefusedBefore& refused) {
                                 return Json{{"run", refused.run}, {"records", refused.records}};
                               })},
      {"part", partJson(*result.input)},
      {"assumed", assumedJson(result.input->conversion().assumptions)},
      {"mapping", mappingJson(result.mapping)},
      {"suggestions", suggestionsJson(suggestionsFor(result))},
      {"warnings", warningsJson(result.warnings, result.input->placeWord())},
      {"log", listOf(result.traces.runLines, lineJson)},
      {"messages", listOf(result.traces.runMessages, messageJson)}};
}

/// The document without a line end.
void writeFile(const ImportResult& result, std::ostream& out) {
  std::string start = textOf(headJson(result));
  start.back() = ',';  // in place of the closing brace: the object goes on
  out << start;
  writeRecords(result, out);
  std::string tail =
      textOf({{"account",
               result.hasAccount() ? accountJson(result.account, *result.arguments.kind) : Json()},
              {"rejectFiles", result.rejectFiles},
              {"report", orNull(result.reportFile)},
              {"reportError", orNull(result.reportError)},
              {"profileError", orNull(result.profileError)},
              {"next", nextSteps(result)}});
  tail.front() = ',';
  out << tail;
}

}  // namespace

void writeImportJson(const ImportResult& result, std::ostream& out) {
  writeFile(result, out);
  out << '\n';
}

void writeFilesJson(const FilesResult& call, std::ostream& out) {
  const ImportKind& kind = *call.arguments().kind;
  std::string start = textOf({{"command", "import"},
                              {"kind", kind.name},
                              {"status", call.status()},
                              {"dryRun", call.arguments().dryRun}});
  start.back() = ',';
  out << start << "\"files\":[";
  for (std::size_t i = 0; i < call.files().size(); ++i) {
    out << (i == 0 ? "" : ",");
    writeFile(*call.files()[i], out);
  }
  std::string tail =
      textOf({{"account", call.refused() ? Json() : accountJson(call.account(), kind)},
              {"next", call.nextSteps()}});
  tail.front() = ',';
  out << ']' << tail << '\n';
}

}  // namespace velk
