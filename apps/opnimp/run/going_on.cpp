#include "apps/opnimp/run/going_on.h"

#include <array>
#include <utility>
#include <vector>

#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/printable.h"
#include "mapping/import_run.h"

namespace velk {

namespace {

using Found = DocumentLookup::Found;

/// So many documents that are there, one behind the other, are taken for the run's own.
constexpr std::size_t believed = 2;

/// The calls that post of one record, beginning with its note's.
struct Posted {
  std::size_t file = 0;  // of the call
  std::size_t record = 0;
  std::size_t note = 0;  // of calls_
  std::size_t count = 0;
};

class Finder {
 public:
  Finder(const LostRun& run, DocumentLookup& lookup) : run_(run), lookup_(lookup) {
    for (const Recorder* file : run.earlier) add(*file);
    add(run.recorder);
    madeBefore_ = documentsBefore(calls_);
    going_.earlier.resize(run.earlier.size());
  }

  GoingOn find() {
    const std::size_t begun = run_.report.begun();
    going_.first = begun;
    if (run_.report.isCutOff()) lookAtCutOff(begun - 1);
    if (!run_.hasAllConfirmed) lookBack();
    return going_;
  }

 private:
  void add(const Recorder& recorder) {
    const std::size_t file = files_++;
    for (const RecordedCall& call : recorder.calls()) {
      if (call.kind != CallKind::Procedure || call.row < ImportRun::firstDataRow) continue;
      const std::size_t record = call.row - ImportRun::firstDataRow;
      if (posted_.empty() || posted_.back().file != file || posted_.back().record != record) {
        posted_.push_back({file, record, calls_.size(), 0});
      }
      ++posted_.back().count;
      calls_.push_back(&call);
    }
  }

  bool isOwn(const Posted& record) const { return record.file == run_.earlier.size(); }

  void lookAtCutOff(std::size_t record) {
    if (posted_.empty() || !isOwn(posted_.back()) || posted_.back().record != record) {
      going_.first = record;
      going_.found = "nothing of the record had been posted";
      return;
    }
    const Posted cut = posted_.back();
    posted_.pop_back();
    const Found found = findNote(cut);
    // Behind a note that was confirmed and is not there, nothing is.
    const bool lost = noteOf(cut).result == CallResult::Ok ? !run_.hasAllConfirmed
                                                           : cut.count == 1 && run_.hasEnded;
    if (found == Found::None && lost) {
      going_.first = record;
      going_.found = "its document is not there: the record is posted again";
    } else if (found == Found::NotKnown) {
      going_.found = "its document cannot be looked up: the record is left in doubt";
    } else if (found == Found::Some) {
      going_.found = "such a document is there: the record is left in doubt";
    } else {
      going_.found = run_.hasEnded
                         ? "the record is left in doubt"
                         : "the lost session may still go on: the record is left in doubt";
    }
  }

  // Servers take changes over in the order in which they were confirmed: what is there tells that
  // all before it is, and what is not, that nothing behind it is. Behind the last document that is
  // there, its account entry may be missing. A document that is there may be another's, which was
  // there before the run: one alone is not believed, and none where copies are to be expected.
  // Files of the call before this one were posted before it; what is missing of them is set apart.
  void lookBack() {
    std::size_t seen = 0;  // of notes that are not known to be missing
    while (!posted_.empty() && seen < believed) {
      const Posted last = posted_.back();
      posted_.pop_back();
      if (noteOf(last).result == CallResult::Failed) continue;  // it has no document
      const Found found = findNote(last);
      if (found == Found::NotKnown || (found == Found::Some && run_.mayBeCopies)) endRun();
      ++looked_[isOwn(last)];
      if (isOwn(last)) firstOwn_ = last.record;
      if (found == Found::None) {
        isMissing(last);
        seen = 0;
      } else if (seen++ == 0) {
        isLastThere(last);
      }
    }
    // Also where there is no note to look for: what was posted before it may be missing.
    if (seen < believed && !run_.isFirst) endRun();
    sayWhatIsMissing();
  }

  /// And all behind it.
  void isMissing(const Posted& record) {
    if (firstOwn_) going_.first = *firstOwn_;
    going_.doubtful.reset();
    if (!isOwn(record)) going_.earlier[record.file] = record.record;
    for (const bool own : {false, true}) missing_[own] += std::exchange(looked_[own], 0);
  }

  /// Its account entry may be missing.
  void isLastThere(const Posted& record) {
    if (isOwn(record)) {
      going_.doubtful = record.record;
    } else {
      going_.earlier[record.file] = record.record;
      missing_[false] += std::exchange(looked_[false], 0);
    }
  }

  void sayWhatIsMissing() {
    if (missing_[true] > 0) {
      going_.found.clear();  // the record in hand comes again, too
      say(counted(missing_[true], "record", "records") +
          " that the lost server had confirmed are not there, and are posted again");
    }
    if (going_.doubtful) {
      say("the account entry of record " + std::to_string(*going_.doubtful + 1) +
          ", which the lost server had confirmed, is left in doubt");
    }
    if (missing_[false] > 0) {
      say(counted(missing_[false], "record", "records") +
          " of files before this one that the lost server had confirmed may not be there, and "
          "are left in doubt");
    }
  }

  [[noreturn]] void endRun() const {
    throw RunEnded{
        "the server that took over may lack what the lost one confirmed last, and that cannot be "
        "looked up" +
        std::string(run_.isFirst ? "" : "; what earlier runs posted may be missing, too")};
  }

  void say(const std::string& text) {
    going_.found.append(going_.found.empty() ? "" : "; ").append(text);
  }

  const RecordedCall& noteOf(const Posted& record) const { return *calls_[record.note]; }

  /// What tells of a record.
  Found findNote(const Posted& record) {
    return lookup_.find(noteOf(record), madeBefore_[record.note]);
  }

  const LostRun& run_;
  DocumentLookup& lookup_;
  std::size_t files_ = 0;
  std::vector<const RecordedCall*> calls_;  // that post
  std::vector<std::size_t> madeBefore_;     // by call
  std::vector<Posted> posted_;
  GoingOn going_;
  // Looking back, of this file and of those before it.
  std::array<std::size_t, 2> looked_{};   // at notes that are not known to be missing
  std::array<std::size_t, 2> missing_{};  // or in doubt
  std::optional<std::size_t> firstOwn_;   // record of this file that was looked at
};

}  // namespace

GoingOn findGoingOn(const LostRun& run, DocumentLookup& lookup) {
  return Finder(run, lookup).find();
}

}  // namespace velk
