#include "apps/opnimp/run/import_command.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>

#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/progress.h"
#include "apps/opnimp/report/reject_files.h"
#include "apps/opnimp/report/report_json.h"
#include "apps/opnimp/report/report_text.h"
#include "apps/opnimp/run/database_choice.h"
#include "apps/opnimp/run/ds_types.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/screen_session.h"
#include "apps/opnimp/warnings/find_warnings.h"
#include "base/errors.h"

namespace velk {

namespace {

/// A transaction that is always taken back.
class DryRun {
 public:
  explicit DryRun(const OpenDatabase& database) : database_(database) {
    try {
      database_.begin();
    } catch (const RuntimeError& error) {
      throw CannotOpen("the database takes no dry run: " + error.description());
    }
  }
  DryRun(const DryRun&) = delete;
  DryRun& operator=(const DryRun&) = delete;
  ~DryRun() {
    try {
      database_.takeBack();
    } catch (const RuntimeError&) {
      // Closing the connection takes it back as well.
    }
  }

 private:
  const OpenDatabase& database_;
};

/// Why the screen refused to import: the columns, or the first record that lacks a mandatory value.
std::string screenRefusal(const ImportResult& result) {
  if (std::string refusal = result.input->refusal(*result.arguments.kind); !refusal.empty()) {
    return refusal;
  }
  const auto mandatory = result.arguments.kind->mandatory;
  const std::string unmapped = unmappedFields(result.mapping, mandatory);
  if (!unmapped.empty()) {
    return "no column of the file is mapped to " + unmapped +
           "; rename the column, or use --map \"Field=Column\"";
  }
  const std::size_t width = mappedWidth(result.mapping);
  for (const std::size_t field : mandatory) {
    for (std::size_t record = 0; record < result.input->count(); ++record) {
      const auto fields = result.input->fields(record, width);
      if (!mappedCell(fields, result.mapping, field).empty()) continue;
      return result.mapping[field].field + " is empty in " + result.input->where(record) +
             " (record " + std::to_string(record + 1) + "); it must not be empty in any record";
    }
  }
  return "the screen refused the file";
}

class ImportRun {
 public:
  ImportRun(const Arguments& arguments, const Streams& streams, const Surroundings& surroundings)
      : streams_(streams),
        surroundings_(surroundings),
        progress_(streams.err, streams.errIsTerminal),
        recorder_(arguments.dryRun ? Recorder::Mode::DryRun : Recorder::Mode::Post) {
    result_.arguments = arguments;
  }

  const ImportResult& run() {
    try {
      prepare();
      drive();
    } catch (const std::bad_alloc&) {
      if (began_) throw;
      throw CannotOpen(tooLarge(arguments().file));
    }
    progress_.erase();
    evaluate();
    return result_;
  }

 private:
  const Arguments& arguments() const { return result_.arguments; }
  const ImportKind& kind() const { return *result_.arguments.kind; }

  /// Everything that can fail before anything is posted.
  void prepare() {
    folder_ = applicationFolder(arguments().appFolder);
    result_.input = readInput(arguments());
    const DatabaseChoice choice = chooseDatabase(arguments().database);
    result_.database = choice.shown;
    prepareRejects(choice);
    database_ = openDatabase(choice, !arguments().database, surroundings_, streams_.err);
    recorder_.interrupted = surroundings_.interrupted;
    recorder_.onRecord = [this](std::size_t record) { progress_.show(record); };
    progress_.setTotal(result_.input->count());
  }

  /// The rejects must not take the place of what they come from.
  void prepareRejects(const DatabaseChoice& database) {
    const std::optional<std::string>& path = arguments().rejects;
    if (!path) return;
    checkWrites({"--rejects", *path, RejectFiles::touched(*path, kind().format)}, database, folder_,
                arguments().file);
    rejects_.emplace(*path, kind().format, arguments().dryRun);
  }

  void drive() {
    std::optional<DryRun> dryRun;
    if (arguments().dryRun) dryRun.emplace(database_);
    ScreenSession session(recorder_, {folder_, surroundings_.clock,
                                      messagesTo(streams_.err, progress_), !arguments().dryRun});
    result_.errorLog = session.errorLogPath();
    try {
      ImportScreen& screen = session.open(kind(), recorder_.wrap(database_.connection));
      viewAndMap(session, arguments(), *result_.input, recorder_);
      import(session, screen);
    } catch (const Refused& refused) {
      result_.refusal = refused.what();
    } catch (const RunEnded& ended) {
      brokeOff(ended);
    }
    if (!began_ && result_.warnings.empty()) findWarningsNow();
  }

  void import(ScreenSession& session, const ImportScreen& screen) {
    result_.mapping = readMapping(screen);
    screenRecords_ = screen.RecordCount();
    findWarningsNow();
    refuseBeforehand();
    if (surroundings_.interrupted && surroundings_.interrupted())
      throw RunEnded{RunEnded::Why::Interrupted};
    began_ = true;
    const EventResult event = session.import();
    screenKept_ = screen.cmdImport.enabled();
    if (event == EventResult::Handled) return;
    result_.endedAtRow = recorder_.lastRow();
    result_.brokeOff = "the screen did not take the Import button";
    if (event == EventResult::Failed) {
      const auto& lines = recorder_.lines();
      result_.brokeOff = lines.empty() ? "an error ended it" : lines.back().text;
    }
  }

  /// What the screen would not refuse, or not clearly.
  void refuseBeforehand() {
    const std::size_t count = result_.input->count();
    if (count > kind().largestRecordCount) throw Refused(tooManyRecords(kind(), count));
    if (count == 0 && !unmappedFields(result_.mapping, kind().mandatory).empty()) {
      const bool noOther = result_.input->refusal(kind()).empty();
      throw Refused((noOther ? "the file has no records, and " : "") + screenRefusal(result_));
    }
  }

  void findWarningsNow() {
    result_.warnings = findWarnings(*result_.input, kind(), result_.mapping,
                                    civilFromDate(surroundings_.clock()).year);
  }

  void brokeOff(const RunEnded& ended) {
    result_.endedAtRow = recorder_.row();
    if (ended.why == RunEnded::Why::Interrupted) {
      result_.brokeOff = "it was interrupted";
      return;
    }
    result_.brokeOff = "the connection to the database was lost";
    const auto& calls = recorder_.calls();
    if (!calls.empty() && calls.back().error) {
      result_.brokeOff += ": " + calls.back().error->description;
    }
  }

  void evaluate() {
    result_.traces = traceRecords(recorder_, result_.input->count(), result_.endedAtRow,
                                  kind().opening != nullptr ? kind().opening->balanceTooBig : "");
    noticeRefusal();
    if (!result_.refused()) {
      findAllowedDsTypes();
      result_.account = drawUpAccount({kind(), *result_.input, result_.mapping, result_.traces,
                                       screenRecords_, result_.brokeOff.empty()});
      writeRejects();
    }
    result_.status = statusOf(result_);
  }

  /// The screen says that it refuses in a message only; what shows it is that no record was looked
  /// up or posted in a run that ended by itself, or that the screen kept a file without records.
  void noticeRefusal() {
    if (result_.refused() || !result_.brokeOff.empty()) return;
    if (result_.traces.records.empty() && !screenKept_) return;
    const bool reached = std::ranges::any_of(result_.traces.records, [](const RecordTrace& trace) {
      return trace.outcome != Outcome::NotReached;
    });
    // What was called for no record of the file is for the account to show.
    if (!reached && result_.traces.strays.empty()) result_.refusal = screenRefusal(result_);
  }

  /// So that the user can correct the salesmen who were refused.
  void findAllowedDsTypes() {
    const bool rejected = std::ranges::any_of(result_.traces.records, [](const RecordTrace& trace) {
      return trace.outcome == Outcome::Rejected;
    });
    if (kind().type != MasterType::Salesman || !rejected) return;
    result_.allowedDsTypes = allowedDsTypes(*database_.connection);
  }

  void writeRejects() {
    if (!rejects_) return;
    try {
      result_.rejectFiles = rejects_->write(*result_.input, result_.traces);
    } catch (const CannotOpen& error) {
      result_.rejectsError = error.what();
    }
  }

  const Streams& streams_;
  const Surroundings& surroundings_;
  ImportResult result_;
  std::string folder_;
  std::optional<RejectFiles> rejects_;
  OpenDatabase database_;
  Progress progress_;
  Recorder recorder_;
  std::optional<long long> screenRecords_;
  bool began_ = false;       ///< whether anything may have been posted
  bool screenKept_ = false;  ///< whether the screen could import the file again
};

}  // namespace

ExitStatus runImport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings) {
  ImportRun run(arguments, streams, surroundings);
  const ImportResult& result = run.run();
  (arguments.json ? writeJsonReport : writeTextReport)(result, streams.out);
  return result.status;
}

}  // namespace velk
