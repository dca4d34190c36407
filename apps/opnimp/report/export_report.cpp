#include "apps/opnimp/report/export_report.h"

#include <nlohmann/json.hpp>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/json_document.h"

namespace velk {

namespace {

std::string verdict(const ExportOutcome& outcome) {
  const std::string& file = outcome.arguments.file;
  switch (outcome.status) {
    case ExitStatus::Posted:
      return "Wrote " + counted(outcome.file.salesmen, "salesman", "salesmen") + " to " + file;
    case ExitStatus::BrokeOff:
      return "Do not rely on " + file + ": " + outcome.failure;
    default:
      return file + " was not written: " + outcome.failure;
  }
}

std::vector<std::string> notes(const ExportOutcome& outcome) {
  if (outcome.status != ExitStatus::Posted) return {};
  std::vector<std::string> notes{
      "Change DSType and HandHeld DS in columns F and G (YES and NO in capital letters: all "
      "else is saved as No), then import the file."};
  // Row 1 has the captions.
  const std::size_t lastRow = outcome.file.salesmen + 1;
  if (lastRow > lastPickRow) {
    notes.push_back("The drop-down lists end at row 1,000; rows up to " + grouped(lastRow) +
                    " have none.");
  }
  if (outcome.file.dsTypes.empty()) {
    notes.emplace_back(
        "The database has no DS types of its operational category group: the "
        "drop-down list of column F is empty.");
  }
  return notes;
}

}  // namespace

void writeExportText(const ExportOutcome& outcome, std::ostream& out) {
  out << printable(verdict(outcome)) << ".\n";
  for (const std::string& note : notes(outcome)) out << printable(note) << '\n';
  if (outcome.logged) out << "Error log: " << printable(outcome.errorLog) << '\n';
}

void writeExportJson(const ExportOutcome& outcome, std::ostream& out) {
  out << textOf({{"command", "export"},
                 {"kind", outcome.arguments.kind->name},
                 {"status", outcome.status},
                 {"file", outcome.arguments.file},
                 {"database", outcome.database},
                 {"errorLog", outcome.errorLog},
                 {"failure", orNull(outcome.failure)},
                 {"salesmen", outcome.file.salesmen},
                 {"dsTypes", outcome.file.dsTypes},
                 {"handheldValues", outcome.file.handheldValues},
                 {"notes", notes(outcome)}})
      << '\n';
}

}  // namespace velk
