#include "apps/opnimp/run/going_on.h"

#include <span>
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

/// The calls that post of one record.
struct Posted {
  std::size_t record = 0;
  std::vector<const RecordedCall*> calls;  // never empty
};

class Finder {
 public:
  Finder(const LostRun& run, DocumentLookup& lookup)
      : run_(run),
        lookup_(lookup),
        calls_(run.recorder.calls()),
        madeBefore_(documentsBefore(calls_)) {
    for (const RecordedCall& call : calls_) {
      if (call.kind != CallKind::Procedure || call.row < ImportRun::firstDataRow) continue;
      const std::size_t record = call.row - ImportRun::firstDataRow;
      if (posted_.empty() || posted_.back().record != record) posted_.push_back({record, {}});
      posted_.back().calls.push_back(&call);
    }
  }

  GoingOn find() {
    const std::size_t begun = run_.report.begun();
    going_.first = begun;
    if (run_.report.isCutOff()) lookAtCutOff(begun - 1);
    if (!run_.hasAllConfirmed) lookBack();
    return going_;
  }

 private:
  void lookAtCutOff(std::size_t record) {
    if (posted_.empty() || posted_.back().record != record) {
      going_.first = record;
      going_.found = "nothing of the record had been posted";
      return;
    }
    const Posted cut = std::move(posted_.back());
    posted_.pop_back();
    const Found found = findNote(cut);
    // Behind a note that was confirmed and is not there, nothing is.
    const bool lost = isConfirmed(*cut.calls.front()) ? !run_.hasAllConfirmed
                                                      : cut.calls.size() == 1 && run_.hasEnded;
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
  void lookBack() {
    std::size_t missing = 0;
    std::size_t looked = 0;  // at notes that are not known to be missing
    std::size_t seen = 0;    // of these, that are there
    while (!posted_.empty() && seen < believed) {
      const Posted last = std::move(posted_.back());
      posted_.pop_back();
      if (last.calls.front()->result == CallResult::Failed) continue;  // it has no document
      const Found found = findNote(last);
      if (found == Found::NotKnown || (found == Found::Some && run_.mayBeCopies)) endRun();
      ++looked;
      if (found == Found::Some) {
        if (seen++ == 0) going_.doubtful = last.record;
        continue;
      }
      going_.first = last.record;
      going_.doubtful.reset();
      missing += std::exchange(looked, 0);
      seen = 0;
    }
    // Also where this file has no note to look for: what was posted before it may be missing.
    if (seen < believed && !run_.isFirst) endRun();
    if (missing > 0) {
      going_.found.clear();  // the record in hand comes again, too
      say(counted(missing, "record", "records") +
          " that the lost server had confirmed are not there, and are posted again");
    }
    if (going_.doubtful) {
      say("the account entry of record " + std::to_string(*going_.doubtful + 1) +
          ", which the lost server had confirmed, is left in doubt");
    }
  }

  [[noreturn]] void endRun() const {
    throw RunEnded{
        "the server that took over may lack what the lost one confirmed last, and that cannot be "
        "looked up" +
        std::string(run_.isFirst ? "" : "; what was posted before this file may be missing, too")};
  }

  void say(const std::string& text) {
    going_.found.append(going_.found.empty() ? "" : "; ").append(text);
  }

  static bool isConfirmed(const RecordedCall& call) { return call.result == CallResult::Ok; }

  /// What tells of a record.
  Found findNote(const Posted& record) {
    const RecordedCall& note = *record.calls.front();
    return lookup_.find(note, madeBefore_[static_cast<std::size_t>(&note - calls_.data())]);
  }

  const LostRun& run_;
  DocumentLookup& lookup_;
  std::span<const RecordedCall> calls_;
  std::vector<std::size_t> madeBefore_;  // by call
  std::vector<Posted> posted_;
  GoingOn going_;
};

}  // namespace

GoingOn findGoingOn(const LostRun& run, DocumentLookup& lookup) {
  return Finder(run, lookup).find();
}

}  // namespace velk
