#include "apps/opnimp/run/export_command.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "apps/opnimp/audit/export_result.h"
#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/cli/progress.h"
#include "apps/opnimp/report/json_writer.h"
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
      : arguments_(arguments),
        streams_(streams),
        surroundings_(surroundings),
        progress_(streams.err, false),
        recorder_(Recorder::Mode::Post) {}

  ExitStatus run() {
    const std::string folder = applicationFolder(arguments_.appFolder);
    const DatabaseChoice choice = chooseDatabase(arguments_.database);
    checkWrites({"the export", arguments_.file, {arguments_.file}}, choice, folder, {});
    const Target target(arguments_.file);
    database_ = openDatabase(choice, !arguments_.database, surroundings_, streams_.err);
    shownDatabase_ = choice.shown;
    drive(folder);
    if (arguments_.json) {
      writeJson();
    } else {
      writeText();
    }
    return status_;
  }

 private:
  void drive(const std::string& folder) {
    ScreenSession session(recorder_,
                          {folder, surroundings_.clock, messagesTo(streams_.err, progress_), true});
    errorLog_ = session.errorLogPath();
    try {
      session.open(*arguments_.kind, recorder_.wrap(database_.connection));
      const std::size_t shown = recorder_.shown().size();
      const EventResult event = session.exportTo(arguments_.file);
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
    failure_ = why;
    status_ = status;
  }

  /// The screen shows no message when it has written the file.
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
    try {
      NativeFileSystem files;
      file_ = readExported(files, arguments_.file, *database_.connection);
      if (!file_.difference.empty()) fail(file_.difference, ExitStatus::BrokeOff);
    } catch (const RuntimeError& error) {
      fail("it could not be read back: " + error.description(), ExitStatus::BrokeOff);
    }
  }

  std::string verdict() const {
    switch (status_) {
      case ExitStatus::Posted:
        return "Wrote " + counted(file_.salesmen, "salesman", "salesmen") + " to " +
               arguments_.file;
      case ExitStatus::BrokeOff:
        return "Do not rely on " + arguments_.file + ": " + failure_;
      default:
        return arguments_.file + " was not written: " + failure_;
    }
  }

  std::vector<std::string> notes() const {
    if (status_ != ExitStatus::Posted) return {};
    std::vector<std::string> notes{
        "Change DSType and HandHeld DS in columns F and G (YES and NO in capital letters: all "
        "else is saved as No), then import the file."};
    const std::size_t lastRow = file_.salesmen + 1;
    if (lastRow > lastPickRow) {
      notes.push_back("The drop-down lists end at row 1,000; rows up to " + grouped(lastRow) +
                      " have none.");
    }
    if (file_.dsTypes.empty()) {
      notes.emplace_back(
          "The database has no DS types of its operational category group: the "
          "drop-down list of column F is empty.");
    }
    return notes;
  }

  void writeText() const {
    streams_.out << printable(verdict()) << ".\n";
    for (const std::string& note : notes()) streams_.out << printable(note) << '\n';
    if (!recorder_.lines().empty()) streams_.out << "Error log: " << printable(errorLog_) << '\n';
  }

  void writeJson() const {
    JsonWriter json(streams_.out);
    json.beginObject();
    json.member("command", "export");
    json.member("kind", arguments_.kind->name);
    json.member("status", static_cast<int>(status_));
    json.member("file", arguments_.file);
    json.member("database", shownDatabase_);
    json.member("errorLog", errorLog_);
    json.memberOrNull("failure", failure_);
    json.member("salesmen", file_.salesmen);
    json.member("dsTypes", file_.dsTypes);
    json.member("handheldValues", file_.handheldValues);
    json.member("notes", notes());
    json.endObject();
  }

  const Arguments& arguments_;
  const Streams& streams_;
  const Surroundings& surroundings_;
  OpenDatabase database_;
  std::string shownDatabase_;
  Progress progress_;
  Recorder recorder_;
  std::string errorLog_;
  ExportedFile file_;
  std::string failure_;
  ExitStatus status_ = ExitStatus::Posted;
};

}  // namespace

ExitStatus runExport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings) {
  return ExportRun(arguments, streams, surroundings).run();
}

}  // namespace velk
