#include "apps/opnimp/run/export_command.h"

#include <filesystem>
#include <system_error>

#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/report/export_report.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/screen_session.h"
#include "base/errors.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

/// An export must not cost the user a file that he named by mistake, nor leave an empty one.
class Target {
 public:
  explicit Target(const std::string& path) : path_(path) {
    std::error_code error;
    existed_ = fs::exists(path, error);
    try {
      if (existed_) requireSalesmen();
      files_.openReplacement(path);
    } catch (const RuntimeError& failure) {
      throw CannotOpen("the file " + path + " could not be written: " + failure.description() +
                       ". Check the path and its permissions");
    }
  }
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;
  ~Target() {
    std::error_code error;
    if (!existed_ && fs::file_size(path_, error) == 0 && !error) fs::remove(path_, error);
  }

 private:
  void requireSalesmen() {
    if (files_.openInput(path_)->length() == 0) return;
    if (WorkbookRecords(files_, path_).hasCaptions()) return;
    throw UsageError("there is a file " + path_ +
                     " that is no workbook of salesmen; choose another name");
  }

  NativeFileSystem files_;
  const std::string& path_;
  bool existed_ = false;
};

class ExportRun {
 public:
  ExportRun(const Arguments& arguments, const Streams& streams, const Surroundings& surroundings)
      : outcome_{.arguments = arguments},
        streams_(streams),
        surroundings_(surroundings),
        progress_(streams.err, false),
        recorder_(Recorder::Mode::Post) {}

  const ExportOutcome& run() {
    const Arguments& arguments = outcome_.arguments;
    const std::string folder = applicationFolder(arguments.appFolder);
    const DatabaseChoice choice = chooseDatabase(arguments.database);
    checkWrites({"the export", arguments.file, {arguments.file}}, choice, folder, {});
    const Target target(arguments.file);
    database_ = openDatabase(choice, !arguments.database, surroundings_, streams_.err);
    outcome_.database = choice.shown;
    drive(folder);
    outcome_.logged = !recorder_.lines().empty();
    return outcome_;
  }

 private:
  void drive(const std::string& folder) {
    const std::string& file = outcome_.arguments.file;
    ScreenSession session(recorder_,
                          {folder, surroundings_.clock, messagesTo(streams_.err, progress_), true});
    outcome_.errorLog = session.errorLogPath();
    try {
      session.open(*outcome_.arguments.kind, recorder_.wrap(database_.connection));
      const std::size_t shown = recorder_.shown().size();
      const EventResult event = session.exportTo(file);
      if (event != EventResult::Handled) return fail("the screen did not take the Export button");
      if (recorder_.shown().size() > shown) return explain(recorder_.shown().back().message);
      if (!session.showedExport()) return fail("the screen did not say why");
      verify();
    } catch (const Refused& refused) {
      fail(refused.what());
    } catch (const RunEnded&) {
      fail("the connection to the database was lost");
    }
  }

  void fail(const std::string& why, ExitStatus status = ExitStatus::CannotOpen) {
    outcome_.failure = why;
    outcome_.status = status;
  }

  /// The screen shows no message if it has written the file.
  void explain(const Message& message) {
    if (message.style == styleInformation) {
      return fail(
          "it is open in another program, or its folder does not let it be locked. Close it "
          "there, and export again",
          ExitStatus::Refused);
    }
    const auto& lines = recorder_.lines();
    fail(lines.empty() ? message.prompt : lines.back().text);
  }

  void verify() {
    ExportedFile& file = outcome_.file;
    try {
      NativeFileSystem files;
      file = readExported(files, outcome_.arguments.file, *database_.connection);
      if (!file.difference.empty()) fail(file.difference, ExitStatus::BrokeOff);
    } catch (const RuntimeError& error) {
      fail("it could not be read back: " + error.description(), ExitStatus::BrokeOff);
    }
  }

  ExportOutcome outcome_;
  const Streams& streams_;
  const Surroundings& surroundings_;
  OpenDatabase database_;
  Progress progress_;
  Recorder recorder_;
};

}  // namespace

ExitStatus runExport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings) {
  ExportRun run(arguments, streams, surroundings);
  const ExportOutcome& outcome = run.run();
  (arguments.json ? writeExportJson : writeExportText)(outcome, streams.out);
  return outcome.status;
}

}  // namespace velk
