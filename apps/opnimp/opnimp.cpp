#include "apps/opnimp/opnimp.h"

#include <algorithm>
#include <exception>
#include <new>
#include <sstream>

#include "apps/opnimp/cli/command_line.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/events.h"
#include "apps/opnimp/report/json_document.h"
#include "apps/opnimp/run/check_database.h"
#include "apps/opnimp/run/convert_command.h"
#include "apps/opnimp/run/database_choice.h"
#include "apps/opnimp/run/export_command.h"
#include "apps/opnimp/run/file_commands.h"
#include "apps/opnimp/run/import_command.h"
#include "apps/opnimp/run/journal_commands.h"
#include "apps/opnimp/run/lock_holders.h"
#include "apps/opnimp/run/preview_command.h"
#include "apps/opnimp/run/profiles.h"
#include "apps/opnimp/run/program_report.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/split_command.h"

namespace velk {

namespace {

ExitStatus runCommand(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings) {
  switch (arguments.command) {
    case Arguments::Command::Import:
      return runImport(arguments, streams, surroundings);
    case Arguments::Command::Preview:
      return runPreview(arguments, streams, surroundings);
    case Arguments::Command::Convert:
      return runConvert(arguments, streams);
    case Arguments::Command::Export:
      return runExport(arguments, streams, surroundings);
    case Arguments::Command::Runs:
      return runRuns(arguments, streams, surroundings);
    case Arguments::Command::Report:
      return runReport(arguments, streams, surroundings);
    case Arguments::Command::Reversal:
      return runReversal(arguments, streams, surroundings);
    case Arguments::Command::Rejects:
      return runRejects(arguments, streams, surroundings);
    case Arguments::Command::CheckDatabase:
      return checkDatabase(arguments, streams, surroundings);
    case Arguments::Command::LockHolders:
      return tellLockHolders(arguments, streams, surroundings);
    case Arguments::Command::Kinds:
      return tellKinds(arguments, streams);
    case Arguments::Command::Template:
      return writeTemplate(arguments, streams);
    case Arguments::Command::Split:
      return splitFile(arguments, streams);
    case Arguments::Command::Version:
      return tellVersion(streams);
    case Arguments::Command::DemoDatabase:
      break;
  }
  makeDemoDatabase(arguments.file);
  streams.out << "Made " << printable(arguments.file) << " with the sample company.\n";
  return ExitStatus::Posted;
}

/// With --quiet there is no report of what went well.
ExitStatus runQuietly(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings) {
  // Its output may be the file that it writes.
  const bool tellsItself = arguments.command == Arguments::Command::Convert;
  if (!arguments.quiet || tellsItself) return runCommand(arguments, streams, surroundings);
  std::ostringstream report;
  const ExitStatus status = runCommand(arguments, {report, streams.err, false}, surroundings);
  if (status != ExitStatus::Posted) streams.out << report.str();
  return status;
}

/// Without the secrets of a connection string that was given in the wrong place.
std::string masked(std::string text, std::span<const std::string> args) {
  for (const std::string& arg : args) {
    const std::string shown = maskPasswords(arg);
    if (shown == arg) continue;
    for (auto at = text.find(arg); at != std::string::npos; at = text.find(arg, at)) {
      text.replace(at, arg.size(), shown);
      at += shown.size();
    }
  }
  return text;
}

bool writesToOutput(const Arguments& arguments) {
  return arguments.command == Arguments::Command::Convert && arguments.file == standardStream;
}

/// The same of a command line that may make no sense: in doubt the output is left alone.
bool mayWriteToOutput(std::span<const std::string> args) {
  return !args.empty() && args.front() == "convert" &&
         std::ranges::find(args, standardStream) != args.end();
}

/// Where a JSON document about a failure belongs; null: nowhere.
std::ostream* documentStream(bool json, bool isOutputTaken, const Streams& streams) {
  if (!json) return nullptr;
  return isOutputTaken ? &streams.err : &streams.out;
}

int failWithoutMemory(std::ostream* document, Events& events, Streams& streams) {
  constexpr ExitStatus status = ExitStatus::BrokeOff;
  try {
    events.failure(status, memoryRanOut);
    if (document != nullptr) writeErrorDocument(status, std::string(memoryRanOut), *document);
  } catch (const std::bad_alloc&) {
    streams.err << "opnimp: " << memoryRanOut << ".\n";  // which needs none
  }
  return static_cast<int>(status);
}

int fail(ExitStatus status, const std::string& text, std::ostream* document, Events& events,
         const Streams& streams) {
  // Standard error has the document alone where it takes it, so that a program can read it.
  if (document != &streams.err) events.failure(status, text);
  if (document != nullptr) writeErrorDocument(status, text, *document);
  return static_cast<int>(status);
}

}  // namespace

int runOpnimp(std::span<const std::string> args, Streams& streams,
              const Surroundings& surroundings) {
  // Asked first: also a command line that makes no sense is answered in the format it asks for.
  const bool json = asksForJson(args);
  std::ostream* document = documentStream(json, mayWriteToOutput(args), streams);
  Events events(streams, asksForJsonLog(args));
  try {
    Arguments arguments = argumentsWithProfile(args, surroundings);
    document = documentStream(json, writesToOutput(arguments), streams);
    takeStandardInput(arguments, surroundings);
    streams.out << arguments.answer;
    const bool answered = !arguments.answer.empty();
    const ExitStatus status =
        answered ? ExitStatus::Posted : runQuietly(arguments, streams, surroundings);
    // A full disk shows only when the buffer is written.
    streams.out.flush();
    if (streams.out) return static_cast<int>(status);
    // A full disk or a closed pipe: what was posted is posted, and nobody has read it.
    const bool ran = !answered && arguments.command == Arguments::Command::Import &&
                     !arguments.dryRun && status != ExitStatus::Refused;
    // Without a JSON document, because standard output takes nothing any more.
    return fail(
        ExitStatus::BrokeOff,
        ran ? "the import ran, but its report could not be written; `opnimp runs` lists the "
              "run, `opnimp report` shows it"
            : "the report could not be written; check where standard output goes",
        nullptr, events, streams);
  } catch (const UsageError& error) {
    return fail(ExitStatus::Usage, masked(error.what(), args), document, events, streams);
  } catch (const Refused& error) {
    return fail(ExitStatus::Refused, masked(error.what(), args), document, events, streams);
  } catch (const CannotOpen& error) {
    return fail(ExitStatus::CannotOpen, masked(error.what(), args), document, events, streams);
  } catch (const std::bad_alloc&) {
    return failWithoutMemory(document, events, streams);
  } catch (const std::exception& error) {
    return fail(ExitStatus::BrokeOff,
                "an unexpected error ended the program: " + masked(error.what(), args) +
                    "; `opnimp runs` tells what imports have posted",
                document, events, streams);
  }
}

}  // namespace velk
