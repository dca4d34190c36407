#include "apps/opnimp/run/journal_commands.h"

#include <algorithm>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/journal/reversal.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/report/import_page.h"
#include "apps/opnimp/report/reject_files.h"
#include "apps/opnimp/report/report_file.h"
#include "apps/opnimp/report/report_json.h"
#include "apps/opnimp/report/report_text.h"
#include "apps/opnimp/report/runs_report.h"
#include "apps/opnimp/run/journaled_import.h"
#include "apps/opnimp/warnings/find_warnings.h"
#include "base/errors.h"
#include "platform/native/native_files.h"

namespace velk {

namespace {

OpenJournal journalOf(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings) {
  Events events(streams, false);
  OpenJournal journal = openJournal(chooseJournal(arguments.journal, surroundings),
                                    KeptFor::Reading, surroundings, events);
  if (!journal.file && arguments.journal) {
    throw CannotOpen("there is no journal " + journal.path + "; choose another with --journal");
  }
  return journal;
}

/// What of the opposite documents would be refused unless it is accepted, as it was with the run's.
std::string acceptedText(const Reversal& reversal, const JournaledImport& run) {
  const CsvRecords records(reversal.text);
  const std::vector<std::string> titles = records.titles();
  std::vector<FieldMapping> mapping = run.start().mapping;
  for (FieldMapping& field : mapping) {
    const auto title = std::ranges::find(titles, field.field);
    field.column.reset();
    if (title != titles.end()) field.column = static_cast<std::size_t>(title - titles.begin());
  }
  const int year = civilFromDate(run.start().time).year;
  std::string codes;
  for (const auto code : notAccepted(findWarnings(records, run.kind(), mapping, year), {})) {
    codes.append(codes.empty() ? ", with --accept " : ",").append(code);
  }
  return codes;
}

Reversal reversalOf(JournaledImport& run) {
  const std::string number = "run " + std::to_string(run.start().number);
  if (run.kind().opening == nullptr) {
    throw UsageError(number +
                     " imported master data, which has no opposite: correct the file and "
                     "import it again");
  }
  try {
    const ImportResult& result = run.result();
    Reversal reversal = reverse(result.traces, result.mapping, run.kind().opening->debitNote);
    if (reversal.count == 0) throw UsageError(number + " posted nothing that could be reversed");
    return reversal;
  } catch (const RuntimeError&) {
    throw CannotOpen(number +
                     " posted a text that no comma-separated file can hold; nothing was written: "
                     "enter the opposite documents by hand");
  }
}

}  // namespace

ExitStatus runRuns(const Arguments& arguments, const Streams& streams,
                   const Surroundings& surroundings) {
  const OpenJournal journal = journalOf(arguments, streams, surroundings);
  (arguments.json ? writeRunsJson : writeRunsText)(journal.path, journal.index, streams.out);
  return journal.index.end.damaged ? ExitStatus::CannotOpen : ExitStatus::Posted;
}

ExitStatus runReport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings) {
  if (arguments.report) checkReportFile(*arguments.report);
  JournaledImport run(journalOf(arguments, streams, surroundings), arguments.run);
  if (arguments.report) {
    writeReportFile(*arguments.report, htmlPage(importPage(run.result())));
    run.result().reportFile = *arguments.report;
  }
  (arguments.json ? writeImportJson : writeImportText)(run.result(), streams.out);
  return run.result().status();
}

ExitStatus runReversal(const Arguments& arguments, const Streams& streams,
                       const Surroundings& surroundings) {
  requireNoFile(arguments.file);
  JournaledImport run(journalOf(arguments, streams, surroundings), arguments.run);
  const Reversal reversal = reversalOf(run);
  NativeFileSystem files;
  writing("the file", arguments.file, "its name",
          [&] { writeFile(files, arguments.file, reversal.text); });
  streams.out << "Written:   " << printable(arguments.file) << " ("
              << counted(reversal.count, "document", "documents") << ")\n"
              << "Next:      Import it into the same database, as " << run.kind().name
              << acceptedText(reversal, run) << ".\n";
  if (reversal.doubtful == 0) return ExitStatus::Posted;
  streams.out << "Next:      Look up " << counted(reversal.doubtful, "record", "records")
              << " in the database that may have been posted, and are not in the file: `opnimp "
                 "rejects "
              << arguments.run << " FILE` writes them to FILE.check.csv.\n";
  return ExitStatus::RecordsLeft;
}

ExitStatus runRejects(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings) {
  JournaledImport run(journalOf(arguments, streams, surroundings), arguments.run);
  const ImportResult& result = run.result();
  if (result.refused()) {
    throw UsageError("run " + std::to_string(arguments.run) +
                     " imported nothing: the whole file is still to be imported");
  }
  RejectFiles files(arguments.file, run.kind().format, false);
  const RejectFiles::Written written = files.write(*result.input, result.traces, result.setApart);
  for (const std::string& path : written.paths) {
    streams.out << "Written:   " << printable(path) << '\n';
  }
  if (!written.failure.empty()) throw CannotOpen(written.failure);
  return ExitStatus::Posted;
}

}  // namespace velk
