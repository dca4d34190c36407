#include "apps/opnimp/run/export_command.h"

#include <filesystem>
#include <system_error>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/audit/recording_connection.h"
#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/report/export_report.h"
#include "apps/opnimp/run/database_hosts.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/screen_session.h"
#include "base/errors.h"
#include "base/text.h"
#include "platform/utf8_path.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

/// An export must not cost the user a file that he named by mistake, nor leave an empty one.
class Target {
 public:
  explicit Target(const std::string& path) : path_(path) {
    std::error_code error;
    existed_ = fs::exists(toPath(path), error);
    writing("the file", path, "its name", [&] {
      if (existed_) requireSalesmen();
      files_.openReplacement(path);
    });
  }
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;
  ~Target() {
    // An empty file that was there before is the user's and stays.
    if (!existed_) ignoringFailure([this] { removeEmpty(); });
  }

 private:
  void removeEmpty() const {
    std::error_code error;
    const fs::path path = toPath(path_);
    if (fs::file_size(path, error) == 0 && !error) fs::remove(path, error);
  }
  void requireSalesmen() {
    // Nothing is lost with an empty file.
    if (files_.openInput(path_)->length() == 0) return;
    if (WorkbookRecords(readBytes(files_, path_)).hasCaptions()) return;
    throw UsageError("there is a file " + path_ +
                     " that is no workbook of salesmen; choose another name");
  }

  NativeFileSystem files_;
  const std::string& path_;
  bool existed_ = false;
};

void fail(ExportOutcome& outcome, const std::string& why,
          ExitStatus status = ExitStatus::CannotOpen) {
  outcome.failure = why;
  outcome.status = status;
}

void explain(ExportOutcome& outcome, const ImportReport& report) {
  if (report.refusal()) {
    return fail(outcome,
                "it is open in another program, or its folder does not let it be locked. Close it "
                "there, and export again",
                ExitStatus::Refused);
  }
  fail(outcome, report.lastError().empty() ? "the screen did not say why" : report.lastError());
}

void verify(ExportOutcome& outcome, Connection& connection) {
  try {
    NativeFileSystem files;
    outcome.file = readExported(files, outcome.arguments.file, connection);
    const std::string& difference = outcome.file.difference;
    if (!difference.empty()) fail(outcome, difference, ExitStatus::BrokeOff);
  } catch (const RuntimeError& error) {
    fail(outcome, "it could not be read back: " + error.description(), ExitStatus::BrokeOff);
  }
}

/// Presses Export on the screen and finds out what came of it.
void drive(ExportOutcome& outcome, ScreenSession& session, ImportReport& report,
           const std::shared_ptr<Connection>& connection) {
  try {
    session.open(*outcome.arguments.kind, connection).run().setObserver(&report);
    if (session.exportTo(outcome.arguments.file) != EventResult::Handled) {
      fail(outcome, "the screen did not take the Export button");
    } else if (report.exported()) {
      verify(outcome, *connection);
    } else {
      explain(outcome, report);
    }
  } catch (const Refused& refused) {
    fail(outcome, refused.what());
  } catch (const RunEnded& ended) {
    fail(outcome, ended.why);
  }
}

}  // namespace

ExitStatus runExport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings) {
  // What it writes is such a workbook, and the import takes no other name for one.
  if (!lowerAscii(arguments.file).ends_with(".xls")) {
    throw UsageError("the export writes an .xls workbook: choose a name that ends in .xls, not " +
                     arguments.file);
  }
  const std::string folder = applicationFolder(arguments.appFolder);
  std::vector<DatabaseChoice> choices = chooseDatabases(arguments, surroundings);
  checkWrites({{"the export", arguments.file, {arguments.file}}}, choices.front(), folder, {});
  const Target target(arguments.file);
  RunGate gate;
  DatabaseHosts hosts(std::move(choices), surroundings, gate);
  const auto database = openUnlocked(hosts);
  Events events(streams, arguments.jsonLog);
  Recorder recorder(Recorder::Mode::Post, gate);
  ImportReport report(false);
  ScreenSession session(recorder, {folder, surroundings.clock, messagesTo(events), true});
  ExportOutcome outcome{
      .arguments = arguments, .database = hosts.shown(), .errorLog = session.errorLogPath()};
  drive(outcome, session, report, recorded(recorder, database));
  outcome.logged = !recorder.lines().empty();
  (arguments.json ? writeExportJson : writeExportText)(outcome, streams.out);
  return outcome.status;
}

}  // namespace velk
