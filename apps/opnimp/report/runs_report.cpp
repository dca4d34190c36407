#include "apps/opnimp/report/runs_report.h"

#include <array>
#include <nlohmann/json.hpp>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/json_document.h"
#include "apps/opnimp/report/report_parts.h"

namespace velk {

namespace {

using Counts = std::array<std::size_t, outcomeCount>;

Counts countOutcomes(const RunSummary& run) {
  Counts counts{};
  for (std::size_t record = 0; record < run.outcomes.size(); ++record) {
    ++counts[static_cast<std::size_t>(run.outcome(record))];
  }
  return counts;
}

struct End {
  const char* code;
  const char* text;
};

End endOf(const RunSummary& run, bool isRunning) {
  if (isRunning) return {"running", "going on"};
  if (run.refused) return {"refused", "refused"};
  return run.completed ? End{"ended", "ended"} : End{"broke-off", "broke off"};
}

/// "118 posted, 2 rejected".
std::string outcomesText(const RunSummary& run) {
  const Counts counts = countOutcomes(run);
  std::string text;
  for (std::size_t i = 0; i < outcomeCount; ++i) {
    if (counts[i] == 0) continue;
    text.append(text.empty() ? "" : ", ").append(grouped(counts[i])).append(" ");
    text.append(outcomeName(static_cast<Outcome>(i)));
  }
  return text.empty() ? "no records" : text;
}

/// Calls `take` with each run and whether it is going on.
template <class Take>
void forEachRun(const RunIndex& index, Take take) {
  for (const RunSummary& run : index.runs) {
    take(run, index.isRunning && &run == &index.runs.back());
  }
}

}  // namespace

void writeRunsText(const std::string& journal, const RunIndex& index, std::ostream& out) {
  if (index.runs.empty()) {
    out << "The journal " << printable(journal)
        << (index.end.damaged ? " is damaged: no run of it can be read.\n" : " has no runs yet.\n");
    return;
  }
  std::vector<std::vector<std::string>> rows{
      {"Run", "Time", "User", "Kind", "File", "Database", "How it ended", "Outcomes"}};
  forEachRun(index, [&](const RunSummary& run, bool isRunning) {
    const RunStart& start = run.start;
    rows.push_back({std::to_string(start.number), formatIso(start.time), printable(start.user),
                    printable(start.kind), printable(start.file), printable(start.database),
                    endOf(run, isRunning).text, outcomesText(run)});
  });
  writeTable(rows, rows.front().size(), out);
}

void writeRunsJson(const std::string& journal, const RunIndex& index, std::ostream& out) {
  Json runs = Json::array();
  forEachRun(index, [&](const RunSummary& run, bool isRunning) {
    const RunStart& start = run.start;
    const Counts counts = countOutcomes(run);
    Json outcomes;
    for (std::size_t i = 0; i < outcomeCount; ++i) {
      outcomes[std::string(outcomeCode(static_cast<Outcome>(i)))] = counts[i];
    }
    runs.push_back({{"run", start.number},
                    {"time", formatIso(start.time)},
                    {"user", start.user},
                    {"version", start.version},
                    {"kind", start.kind},
                    {"file", start.file},
                    {"sha256", hexText(start.fileHash)},
                    {"database", start.database},
                    {"end", endOf(run, isRunning).code},
                    {"resumes", start.resumes == 0 ? Json() : Json(start.resumes)},
                    {"outcomes", std::move(outcomes)}});
  });
  out << textOf({{"command", "runs"}, {"journal", journal}, {"runs", std::move(runs)}}) << '\n';
}

}  // namespace velk
