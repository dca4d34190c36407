// The import of one file: first all that can speak against it, then its records, on as many screens
// as they take, then what became of them.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/run/file_journal.h"
#include "apps/opnimp/run/import_call.h"
#include "apps/opnimp/run/import_outputs.h"
#include "apps/opnimp/run/next_host.h"
#include "apps/opnimp/run/screen_session.h"
#include "apps/opnimp/run/shadow_file.h"
#include "apps/opnimp/run/whole_run.h"

namespace velk {

class SingleImport {
 public:
  /// Reads the file. Raises CannotOpen and UsageError. The call lives as long.
  SingleImport(const Arguments& arguments, ImportCall& call);
  SingleImport(const SingleImport&) = delete;
  SingleImport& operator=(const SingleImport&) = delete;

  /// Tries what is to be written. Raises UsageError and CannotOpen.
  void prepare(const std::string& database);

  /// Takes up what earlier runs left of the file. Raises UsageError where that needs --rejects, or
  /// where what they left is not the end of the file.
  void resume(const Resumption& resumption);
  /// Shows the file on its first screen, and looks for all that speaks against importing it; what
  /// is found is its refusal. Posts nothing. Raises CannotOpen.
  void open();
  /// Posts the records. Raises CannotOpen.
  void import();
  /// What became of the records: into the journal, the rejects and the result. Once for each file,
  /// whatever became of the import; asks the database, if the file did not break off.
  void evaluate();
  bool isEvaluated() const { return evaluated_; }

  /// It does not begin, for what has come up elsewhere.
  void breakOff(std::string why);
  void refuse(std::string why);
  /// For the sake of another file, which is refused.
  void refuseWith(const std::string& file);
  /// The database does not answer any more.
  void giveUp(const std::string& why);
  /// Last of all.
  void tellOfEnd();
  /// Writes into the journal, if it is there, that the import ended so.
  void endInJournal(std::string_view why);

  /// Whether anything may have been posted.
  bool began() const { return began_; }
  /// Whether the rest of the call may go on.
  bool hasEnded() const { return result_.refused() || !result_.brokeOff.empty(); }
  /// From 0; empty before the first one. Of a run that stands still.
  std::optional<std::size_t> recordInHand() const {
    return report_.begun() == 0 ? std::nullopt : std::optional(report_.begun() - 1);
  }
  const ImportResult& result() const { return result_; }
  ImportResult& result() { return result_; }
  /// To know those records of opening balances again that will not be skipped for an amount of 0.
  std::vector<JournaledRecord> recordsToPost() const;

 private:
  const Arguments& arguments() const { return result_.arguments; }
  const ImportKind& kind() const { return *result_.arguments.kind; }
  std::size_t count() const { return result_.input->count(); }

  /// Does what may be refused, or end the run.
  template <class Steps>
  void tryTo(Steps steps);
  /// Posts them from `first` on, on a new screen unless it is empty.
  void importRecords(std::optional<std::size_t> first);
  /// At another host, after what ended the run: answers the record to begin with. Throws RunEnded
  /// where that is not possible.
  std::size_t goOn(const RunEnded& ended);
  bool canGoOn() const;
  /// After the run: the server that took over from another file's may lack what the records from
  /// that one on have posted.
  void doubtFrom(std::size_t record);
  void countRepeated();
  void watchDatabase();
  void beginJournal();
  void openPart(std::size_t first);
  void importPart();
  bool fillContents(std::size_t first);
  MessageHandler messages();
  void view(bool isFirst);
  void prepareRun();
  void endIfInterrupted() const;
  void requireCompany() const;
  bool wasRefused() const;
  /// After the last screen.
  void close();
  void settle();
  void tellOfLog();
  void findWarningsNow();
  void writeAccount();
  void drawUp();
  void findAllowedDsTypes();
  void endJournal();

  ImportCall& call_;
  ImportResult result_;
  std::optional<ImportOutputs> outputs_;
  Recorder recorder_;
  ImportReport report_;
  std::optional<FileJournal> journal_;
  NextHost nextHost_;
  std::optional<WholeRun> whole_;  ///< until it is known what became of the transaction
  // The part whose screen is open: records in a row, as many as it takes.
  std::size_t partEnd_ = 0;  ///< the record behind its last one
  std::optional<ShadowFile> contents_;
  std::optional<LookAhead> lookAhead_;
  std::optional<ScreenSession> session_;
  std::shared_ptr<OwnConnection> openedOn_;  ///< that screen's connection
  std::size_t viewedEnd_ = 0;                ///< the record behind the last that one viewed
  long long viewedRecords_ = 0;              ///< as the screens counted so far
  std::optional<long long> screenRecords_;   ///< as they counted when all had viewed theirs
  std::size_t repeatedBefore_ = 0;           ///< calls of the connection that are counted already
  std::size_t toldRecords_ = 0;              ///< as events, if they have something to tell
  std::chrono::steady_clock::time_point start_;
  bool began_ = false;
  bool evaluated_ = false;
};

}  // namespace velk
