#include "apps/opnimp/report/report_text.h"

#include <algorithm>
#include <string>
#include <vector>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/account_text.h"
#include "apps/opnimp/report/report_parts.h"

namespace velk {

namespace {

// More than a person reads on a terminal; the JSON report lists all records.
constexpr std::size_t mostRecordsListed = 200;
constexpr std::size_t mostLinesListed = 50;

using Lines = std::vector<const RecordedLine*>;

/// The log lines that did not get into the error log's file.
Lines unwrittenLines(const Traces& traces) {
  Lines lines = traces.runLines;
  for (const RecordTrace& trace : traces.records) {
    lines.insert(lines.end(), trace.lines.begin(), trace.lines.end());
  }
  std::erase_if(
      lines, [](const RecordedLine* line) { return line->kept != RecordedLine::Kept::NotWritten; });
  return lines;
}

class TextReport {
 public:
  TextReport(const ImportResult& result, std::ostream& out) : result_(result), out_(out) {}

  void write() {
    writeHead();
    writeAssumed(result_.input->conversion().assumptions, out_);
    writeMapping(result_.mapping, out_);
    writeWarnings(result_.warnings, result_.input->placeWord(), out_);
    // Before the records, and in a refused run, too: these lines may explain all that follows.
    writeRunLines();
    if (result_.passedOver) {
      out_ << "\nPassed over: run " << result_.resumes << " reached all its records"
           << fromText(result_) << ", or may have; `opnimp report " << result_.resumes
           << "` shows them\n";
    } else if (result_.refused()) {
      out_ << "\nRefused: " << printable(result_.refusal) << '\n';
    } else {
      writeRecords();
      out_ << "\nAccount\n";
      writeAccount(result_.account, result_.arguments, "In the file", out_);
    }
    writeEnd();
  }

 private:
  void writeHead() {
    out_ << "File:     " << printable(result_.arguments.file) << " (" << recordsText(*result_.input)
         << ")\n"
         << "Database: " << printable(result_.database) << '\n';
    if (!result_.fileHash.empty()) out_ << "SHA-256:  " << result_.fileHash << '\n';
    if (!result_.journal.empty()) {
      out_ << "Run:      " << result_.run << ", " << formatIso(result_.began) << ", by "
           << printable(result_.user) << '\n';
    }
    if (result_.resumes != 0 && !result_.passedOver) {
      out_ << "Resumes:  run " << result_.resumes
           << "; the records that it reached are none of these\n";
    }
    if (result_.repeatedCalls > 0) {
      out_ << "Repeated: " << counted(result_.repeatedCalls, "call", "calls")
           << " that had met another session's change and had been taken back\n";
    }
    for (const HostChange& change : result_.hostChanges) {
      out_ << "Went on:  " << printable(goingOnText(change)) << '\n';
    }
    if (result_.isDryRun()) {
      out_ << "Dry run:  every check ran, no procedure did. What the procedures themselves would "
              "refuse was not tried.\n";
    }
  }

  void writeRunLines() {
    if (result_.traces.runLines.empty()) return;
    out_ << "\nLogged for the run as a whole\n";
    writeLines(result_.traces.runLines);
  }

  void writeLines(const Lines& lines) {
    for (std::size_t i = 0; i < std::min(lines.size(), mostLinesListed); ++i) {
      out_ << "  " << printable(lines[i]->text) << '\n';
    }
    writeMore(lines.size(), mostLinesListed, out_);
  }

  void writeRecords() {
    const auto& records = result_.traces.records;
    std::size_t listed = 0;
    for (std::size_t record = 0; record < records.size(); ++record) {
      const RecordTrace& trace = records[record];
      // Counted after the limit, too, for the line that tells how many more there are.
      if (!needsAttention(trace) || listed++ >= mostRecordsListed) continue;
      if (listed == 1) out_ << "\nRecords that need attention\n";
      out_ << "  " << result_.input->where(record) << " (record " << record + 1 << ") "
           << nameOf(trace.outcome, result_.arguments) << ": " << printable(reasonOf(trace))
           << '\n';
    }
    writeMore(listed, mostRecordsListed, out_);
  }

  void writeEnd() {
    if (!result_.brokeOff.empty()) {
      out_ << "\nThe run broke off: " << printable(result_.brokeOff) << '\n';
    }
    out_ << '\n';
    if (!result_.noLookAhead.empty()) {
      out_ << "Look-ups:  each in its record's turn, which takes longer: "
           << printable(result_.noLookAhead) << '\n';
    }
    writeErrorLog();
    writeJournal();
    for (const std::string& path : result_.rejectFiles) {
      out_ << "Written:   " << printable(path) << '\n';
    }
    if (!result_.metricsFile.empty()) {
      out_ << "Written:   " << printable(result_.metricsFile) << '\n';
    }
    if (!result_.rejectsError.empty()) {
      out_ << "Rejects:   " << printable(result_.rejectsError) << '\n';
    }
    if (!result_.reportFile.empty()) out_ << "Report:    " << printable(result_.reportFile) << '\n';
    if (!result_.reportError.empty()) {
      out_ << "Report:    " << printable(result_.reportError) << '\n';
    }
    for (const std::string& step : nextSteps(result_))
      out_ << "Next:      " << printable(step) << '\n';
  }

  void writeJournal() {
    if (result_.journal.empty()) return;
    out_ << "Journal:   " << printable(result_.journal) << ", run " << result_.run
         << "; it knows its own runs only\n";
  }

  void writeErrorLog() {
    if (result_.isDryRun()) {
      out_ << "Error log: not written in a dry run\n";
      return;
    }
    // A run that ended before its screen opened has none.
    if (result_.errorLog.empty()) return;
    out_ << "Error log: " << printable(result_.errorLog) << '\n';
    const Lines unwritten = unwrittenLines(result_.traces);
    if (unwritten.empty()) return;
    out_ << "The error log could not take " << counted(unwritten.size(), "line", "lines") << " ("
         << printable(unwritten.front()->writeError) << "):\n";
    writeLines(unwritten);
  }

  const ImportResult& result_;
  std::ostream& out_;
};

}  // namespace

void writeImportText(const ImportResult& result, std::ostream& out) {
  TextReport(result, out).write();
}

void writeFilesText(const FilesResult& call, std::ostream& out) {
  const std::size_t count = call.files().size();
  std::vector<std::vector<std::string>> rows{{"File", "Status", "Run", "Records"}};
  for (const ImportResult* file : call.files()) {
    out << "== File " << rows.size() << " of " << count << " ==\n";
    writeImportText(*file, out);
    out << '\n';
    rows.push_back({printable(file->arguments.file),
                    std::to_string(static_cast<int>(file->status())),
                    file->run == 0 ? "-" : std::to_string(file->run),
                    file->passedOver ? "passed over" : grouped(file->input->count())});
  }
  out << "== All " << count << " files ==\n";
  writeTable(rows, 1, out);
  if (!call.refused()) {
    out << "\nAccount of all files\n";
    writeAccount(call.account(), call.arguments(), "In the files", out);
  }
  out << '\n';
  for (const std::string& step : call.nextSteps()) out << "Next:      " << step << '\n';
}

}  // namespace velk
