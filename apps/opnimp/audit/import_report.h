// What an import itself said, by record and of the run: the word that the account holds against
// what the recorder saw.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mapping/import_observer.h"

namespace velk {

/// A finding and what the user reads of it.
struct Said {
  Finding why;
  std::string text;
  std::size_t row = 0;  ///< of the mapping list; 0: none
};

struct RecordReport {
  /// Stopped: by an error that ended the run, at any point of the record.
  enum class Fate { NotBegun, Begun, Refused, Skipped, Stopped, Posted };
  Fate fate = Fate::NotBegun;
  bool warned = false;             ///< a warning was said of it, or an error trapped
  Posting posting;                 ///< what it called, as it saw the calls end
  std::vector<std::string> texts;  ///< refusal, warnings and errors, word for word
};

class ImportReport final : public ImportObserver {
 public:
  explicit ImportReport(bool dryRun) : dryRun_(dryRun) {}

  /// What follows are the records behind the first `before` ones, on a screen of their own.
  void beginPart(std::size_t before);

  /// Called before each record with its number from 1; what it throws ends the run.
  std::function<void(std::size_t record)> onRecord;
  /// Called after each record that ended by itself; what it throws ends the run, too.
  std::function<void(std::size_t record)> onRecordEnd;

  /// Of a record by its position from 0; one that was never begun has the default.
  const RecordReport& record(std::size_t position) const;
  std::size_t begun() const { return records_.size(); }
  /// Whether the last one that was begun never ended.
  bool isCutOff() const {
    return !records_.empty() && records_.back().fate == RecordReport::Fate::Begun;
  }

  /// Of the view, the mapping, the run or the export, whichever came last; empty if none was.
  const std::optional<Said>& refusal() const { return refusal_; }
  /// The error that stopped the run, as the log has it.
  const std::string& stop() const { return stop_; }
  const std::optional<RuntimeError>& stopError() const { return stopError_; }
  /// The last error that ended a step only, as the log has it.
  const std::string& lastError() const { return lastError_; }
  bool ended() const { return ended_; }
  bool exported() const { return exported_; }
  /// The record that was begun last was cut off, for a reason that the user reads.
  void cutOff(std::string why);
  /// Forgets the records from that position on: they begin again.
  void beginAgain(std::size_t position) { records_.resize(position); }
  /// Forgets refusal, stop and errors so far: what comes next is another step.
  void beginStep();

  void refused(const Finding& why, std::size_t row, std::string_view text) override;
  void runStopped(const RuntimeError& error, std::string_view text) override;
  void runEnded() override { ended_ = true; }
  void recordBegins(std::size_t row) override;
  void recordFound(Verdict verdict, const Finding& why, std::string_view text) override;
  void recordEnds(const Posting& posting) override;
  void errorTrapped(const RuntimeError& error, std::string_view text) override;
  void exportWritten() override { exported_ = true; }
  bool isDryRun() const override { return dryRun_; }

 private:
  RecordReport* current() { return inRecord_ ? &records_.back() : nullptr; }

  bool dryRun_;
  std::vector<RecordReport> records_;  // those begun, in order
  std::size_t before_ = 0;             // how many records were on earlier screens
  bool inRecord_ = false;
  std::optional<Said> refusal_;
  std::string stop_;
  std::optional<RuntimeError> stopError_;
  std::string lastError_;
  bool ended_ = false;
  bool exported_ = false;
};

}  // namespace velk
