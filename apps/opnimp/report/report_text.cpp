#include "apps/opnimp/report/report_text.h"

#include <algorithm>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/report_parts.h"

namespace velk {

namespace {

// More than a person reads on a terminal; the JSON report lists all records.
constexpr std::size_t mostRecordsListed = 200;
constexpr std::size_t mostLinesListed = 50;

using Row = std::vector<std::string>;
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
    writeMapping(result_.mapping, out_);
    writeWarnings(result_.warnings, result_.input->placeWord(), out_);
    // Before the records, and in a refused run, too: these lines may explain all that follows.
    writeRunLines();
    if (result_.refused()) {
      out_ << "\nRefused: " << printable(result_.refusal) << '\n';
    } else {
      writeRecords();
      writeAccount();
    }
    writeEnd();
  }

 private:
  const ImportKind& kind() const { return *result_.arguments.kind; }

  void writeHead() {
    out_ << "File:     " << printable(result_.arguments.file) << " (" << recordsText(*result_.input)
         << ")\n"
         << "Database: " << printable(result_.database) << '\n';
    if (!result_.fileHash.empty()) out_ << "SHA-256:  " << result_.fileHash << '\n';
    if (!result_.journal.empty()) {
      out_ << "Run:      " << result_.run << ", " << formatIso(result_.began) << ", by "
           << printable(result_.user) << '\n';
    }
    if (result_.resumes != 0) {
      out_ << "Resumes:  run " << result_.resumes << "; the records that it reached are none of "
           << "these\n";
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
    writeMore(lines.size(), mostLinesListed);
  }

  void writeMore(std::size_t count, std::size_t most) {
    if (count > most) out_ << "  ... and " << grouped(count - most) << " more\n";
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
           << nameOf(trace.outcome, result_) << ": " << printable(reasonOf(trace)) << '\n';
    }
    writeMore(listed, mostRecordsListed);
  }

  static Row rowOf(std::string_view name, const Sums& sums) {
    return {std::string(name),      grouped(sums.count),      money(sums.billDebit),
            money(sums.billCredit), money(sums.balanceDebit), money(sums.balanceCredit)};
  }

  std::vector<Row> accountRows() const {
    std::vector<Row> rows{
        {"", "Count", "Bill debit", "Bill credit", "Balance debit", "Balance credit"}};
    for (std::size_t i = 0; i < outcomeCount; ++i) {
      const Sums& sums = result_.account.byOutcome[i];
      if (sums.count > 0) rows.push_back(rowOf(nameOf(static_cast<Outcome>(i), result_), sums));
    }
    rows.push_back(rowOf("In the file", result_.account.file));
    rows.push_back(rowOf(effectName(kind().becomes[0], result_), result_.account.notes));
    Row entries = rowOf(effectName(kind().becomes[1], result_), result_.account.entries);
    entries[2] = entries[3] = "";  // account entries carry the balance only
    rows.push_back(entries);
    return rows;
  }

  void writeAccount() {
    std::vector<Row> rows = accountRows();
    // Master data has counts, but no amounts.
    if (kind().opening == nullptr) std::ranges::for_each(rows, [](Row& row) { row.resize(2); });
    out_ << "\nAccount\n";
    writeTable(rows, 1, out_);
    writeVerdict();
  }

  void writeVerdict() {
    const Account& account = result_.account;
    if (account.unreadable > 0) {
      out_ << "  " << unreadableText(account) << '\n';
    }
    if (account.addsUp()) {
      out_ << "  The account adds up.\n";
      return;
    }
    out_ << "  THE ACCOUNT DOES NOT ADD UP:\n";
    for (const std::string& difference : account.differences) {
      out_ << "  " << printable(difference) << '\n';
    }
    writeMore(account.differenceCount, account.differences.size());
  }

  void writeEnd() {
    if (!result_.brokeOff.empty()) {
      out_ << "\nThe run broke off: " << printable(result_.brokeOff) << '\n';
    }
    out_ << '\n';
    writeErrorLog();
    writeJournal();
    for (const std::string& path : result_.rejectFiles) {
      out_ << "Written:   " << printable(path) << '\n';
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

}  // namespace velk
