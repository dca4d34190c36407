#include "apps/opnimp/report/events.h"

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/cli/program_version.h"
#include "apps/opnimp/report/json_document.h"
#include "base/dates.h"

namespace velk {

namespace {

/// Such as "2026-03-31T12:00:00Z": programs compare the events of several machines.
std::string timeNow() {
  using Days = std::chrono::duration<double, std::chrono::days::period>;
  constexpr double epoch = 25569;  // 1 January 1970
  const Days days = std::chrono::system_clock::now().time_since_epoch();
  std::string text = formatIso({epoch + days.count()});
  text[text.find(' ')] = 'T';
  return text + "Z";
}

/// ", file in.csv, record 5": what has a value.
std::string sentenceOf(const Json& fields) {
  std::string text;
  for (const auto& [name, value] : fields.items()) {
    if (value.is_null()) continue;
    text += ", " + name + " " +
            (value.is_string() ? printable(value.get<std::string>()) : value.dump());
  }
  return text;
}

/// Those that there are.
Json outcomesJson(const Account& account) {
  Json json = Json::object();
  for (std::size_t i = 0; i < outcomeCount; ++i) {
    const auto outcome = static_cast<Outcome>(i);
    if (account.count(outcome) > 0) {
      json[std::string(outcomeCode(outcome))] = account.count(outcome);
    }
  }
  return json;
}

}  // namespace

void Events::line(std::string_view text) {
  // Otherwise it would begin in the middle of the progress line.
  progress_.erase();
  err_ << text << '\n' << std::flush;
}

void Events::tell(std::string_view event, const Json& fields) {
  if (!asJson_) return line("opnimp: " + std::string(event) + sentenceOf(fields));
  Json json{{"time", timeNow()}, {"event", event}};
  json.update(fields);
  line(textOf(std::move(json)));
}

void Events::message(std::string_view text) {
  if (asJson_) return tell("message", {{"text", text}});
  line(printableLines(text));
}

void Events::notice(std::string_view text) {
  if (asJson_) return tell("notice", {{"text", text}});
  line("opnimp: " + printable(text));
}

void Events::failure(ExitStatus status, std::string_view text) {
  if (asJson_) return tell("failure", {{"status", status}, {"text", text}});
  line("opnimp: " + printable(text) + ".");
}

void Events::runBegins(const ImportResult& run) {
  if (!tellsAll_) return;
  tell("begin", {{"file", run.arguments.file},
                 {"run", run.run == 0 ? Json() : Json(run.run)},
                 {"resumes", run.resumes == 0 ? Json() : Json(run.resumes)},
                 {"kind", run.arguments.kind->name},
                 {"database", run.database},
                 {"dryRun", run.isDryRun()},
                 {"records", run.input->count()},
                 {"version", programVersion}});
}

void Events::recordEnds(const ImportResult& run, std::size_t record, const RecordTrace& trace) {
  if (!tellsAll_ || !needsAttention(trace)) return;
  tell("record", {{"file", run.arguments.file},
                  {"record", record + 1},
                  {std::string(run.input->placeWord()), run.input->place(record).line},
                  {"outcome", outcomeCode(trace.outcome)},
                  {"reason", reasonOf(trace)}});
}

void Events::waits(const ImportResult& run, std::optional<std::size_t> record,
                   const LockHolders& holders) {
  if (asJson_) {
    return tell("waits", {{"file", run.arguments.file},
                          {"record", record ? Json(*record + 1) : Json()},
                          {"holders", holders.names},
                          {"missingRight", orNull(holders.missingRight)}});
  }
  const std::string who = record ? "record " + grouped(*record + 1) : "the run";
  if (holders.names.empty()) {
    return notice(who +
                  " has waited for the database for a second; whether for a lock, and whose, "
                  "it tells only an account with the right " +
                  holders.missingRight + ".");
  }
  std::string names;
  for (const std::string& name : holders.names)
    names.append(names.empty() ? "" : "; ").append(name);
  notice(who + " waits for a lock. It is held by " + names + ".");
}

void Events::hostChanges(const ImportResult& run, const HostChange& change) {
  if (!asJson_) {
    return notice(change.why + "; the run goes on with record " + grouped(change.record) + " at " +
                  change.to + ".");
  }
  tell("host-changes", {{"file", run.arguments.file},
                        {"record", change.record},
                        {"from", change.from},
                        {"to", change.to},
                        {"reason", change.why},
                        {"found", orNull(change.found)}});
}

void Events::runEnds(const ImportResult& run) {
  if (!tellsAll_) return;
  if (!run.brokeOff.empty()) {
    tell(run.connectionLost ? "connection-lost" : "broke-off",
         {{"file", run.arguments.file}, {"reason", run.brokeOff}});
  }
  tell("end", {{"file", run.arguments.file},
               {"run", run.run == 0 ? Json() : Json(run.run)},
               {"status", run.status()},
               {"refused", orNull(run.refusal)},
               {"addsUp", run.hasAccount() ? Json(run.account.addsUp()) : Json()},
               {"records", outcomesJson(run.account)},
               {"seconds", run.seconds}});
}

}  // namespace velk
