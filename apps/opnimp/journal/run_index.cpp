#include "apps/opnimp/journal/run_index.h"

#include <algorithm>

#include "base/errors.h"

namespace velk {

namespace {

std::uint64_t runNumberOf(const RunSummary& run) {
  return run.start.number;
}

/// Takes the journal's entries one by one.
class IndexBuilder {
 public:
  IndexBuilder(RunIndex& index, const std::string& machineStart)
      : index_(index), machineStart_(machineStart) {}

  void take(EntryType type, EntryReader payload) {
    if (type == EntryType::RunBegun) return begin(payload);
    if (type == EntryType::RecordBegun) {
      beginRecord(recordOf(payload.number()));
    } else if (type == EntryType::RecordEnded) {
      setOutcome(readRecordOutcome(payload));
    } else if (type == EntryType::RunEnded) {
      end(readRunEnd(payload));
    } else if (type == EntryType::OthersSynced) {
      sync(current());
    } else if (type == EntryType::MayBeKept) {
      current().mayBeKept = true;
    } else if (type == EntryType::ServerHistory) {
      current().history = payload.text();
    } else if (type == EntryType::RecordsDoubted) {
      const std::uint64_t run = payload.number();
      doubt(run, payload.count());
    }
  }

 private:
  RunSummary& current() {
    if (index_.runs.empty()) throw RuntimeError(ErrorNumber::InvalidFileFormat);
    return index_.runs.back();
  }

  std::size_t recordOf(std::uint64_t number) {
    if (number >= current().outcomes.size()) throw RuntimeError(ErrorNumber::InvalidFileFormat);
    return static_cast<std::size_t>(number);
  }

  void begin(EntryReader payload) {
    RunStart start = readRunStart(payload);
    payload.bytes(payload.number());  // the file's
    readBehindFile(payload, start);
    RunSummary& run = index_.runs.emplace_back();
    run.outcomes.resize(start.records.size());
    run.powerLost = start.machineStart != machineStart_ || machineStart_.empty();
    run.start = std::move(start);
  }

  /// What was said of it and of those behind it counts no more.
  void beginRecord(std::size_t record) {
    RunSummary& run = current();
    for (std::size_t later = record; later < run.begun; ++later) run.outcomes[later].reset();
    run.begun = record + 1;
    run.synced = std::min(run.synced, record);
  }

  /// The record that began last was still to end.
  static void sync(RunSummary& run) { run.synced = run.begun == 0 ? 0 : run.begun - 1; }

  void setOutcome(const std::pair<std::size_t, Outcome>& ended) {
    current().outcomes[recordOf(ended.first)] = ended.second;
  }

  void end(const RunEnd& end) {
    std::ranges::for_each(end.revised, [this](const auto& ended) { setOutcome(ended); });
    RunSummary& run = current();
    run.ended = true;
    run.completed = end.completed;
    run.refused = !end.refusal.empty();
  }

  void doubt(std::uint64_t number, std::size_t record) {
    const auto run = std::ranges::find(index_.runs, number, runNumberOf);
    if (run == index_.runs.end()) throw RuntimeError(ErrorNumber::InvalidFileFormat);
    run->doubted = std::min(run->doubted, record);
  }

  RunIndex& index_;
  const std::string& machineStart_;
};

/// Whether they reached the same records of their file.
bool overlap(const RunSummary& a, const RunSummary& b) {
  const std::size_t first = std::max(a.start.firstRecord, b.start.firstRecord);
  return first < std::min(a.start.firstRecord + a.reached(), b.start.firstRecord + b.reached());
}

}  // namespace

KnownFile fileOf(const RunStart& run) {
  return {run.kind, run.databaseId, run.fileHash, assumedValue(run.assumed, sheetAssumption)};
}

// Whatever was begun when the power failed, and up to a sync's worth of records behind it, may have
// been posted without a trace here.
std::size_t RunSummary::nextRecord() const {
  if (ended || !powerLost) return begun;
  return std::min(begun + recordsBetweenSyncs, outcomes.size());
}

// Earlier versions did not say that it was about to be kept.
bool RunSummary::isTakenBack() const {
  return !ended && start.oneTransaction && !start.isEarly && !mayBeKept;
}

std::size_t RunSummary::reached() const {
  if (isTakenBack() || count([](Outcome outcome) { return outcome == Outcome::TakenBack; }) > 0)
    return 0;
  std::size_t reached = outcomes.size();
  while (reached > 0 && outcome(reached - 1) == Outcome::NotReached) --reached;
  return reached;
}

Outcome RunSummary::outcome(std::size_t record) const {
  const bool takenBack = isTakenBack();
  // Once it was to be kept, whether it was is known only when the run has ended.
  const bool open = !ended && start.oneTransaction;
  if (outcomes[record]) {
    const bool isGone = takenBack && (isPosted(*outcomes[record]) || isDoubtful(*outcomes[record]));
    if (isGone) return Outcome::TakenBack;
    const bool mayBeGone = (open || mayBeLost(record)) && isPosted(*outcomes[record]);
    return mayBeGone ? Outcome::Unknown : *outcomes[record];
  }
  const bool doubtful = !ended && !takenBack && record < nextRecord();
  return doubtful ? Outcome::Unknown : Outcome::NotReached;
}

std::size_t RunSummary::count(bool (*isOfSort)(Outcome)) const {
  std::size_t count = 0;
  for (std::size_t record = 0; record < outcomes.size(); ++record) {
    if (isOfSort(outcome(record))) ++count;
  }
  return count;
}

const RunSummary* RunIndex::find(std::uint64_t number) const {
  const auto found = std::ranges::find(runs, number, runNumberOf);
  return found == runs.end() ? nullptr : &*found;
}

std::vector<const RunSummary*> RunIndex::takenUp(std::uint64_t number) const {
  std::vector<const RunSummary*> taken;
  const RunSummary* const last = find(number);
  if (last == nullptr) return taken;
  for (const RunSummary* run = last;; --run) {
    if (fileOf(run->start) == fileOf(last->start)) {
      if (std::ranges::any_of(taken, [&](const auto* later) { return overlap(*run, *later); })) {
        return taken;
      }
      taken.push_back(run);
    }
    if (run == runs.data()) return taken;
  }
}

RunIndex readIndex(const KeptFile& file, const std::string& machineStart) {
  RunIndex index;
  IndexBuilder builder(index, machineStart);
  // Asked first: a run that ends in between is told as ended.
  const bool written = file.isWrittenElsewhere();
  index.end = readEntries(file, [&](EntryType type, std::string_view payload) {
    builder.take(type, EntryReader(payload));
  });
  index.isRunning = written && !index.runs.empty() && !index.runs.back().ended;
  return index;
}

JournaledRun readRun(const KeptFile& file, std::uint64_t number) {
  JournaledRun run;
  bool within = false;
  readEntries(file, [&](EntryType type, std::string_view payload) {
    if (type == EntryType::RunBegun) {
      // Its number comes first, so that the others need not be read as a whole.
      within = EntryReader(payload).number() == number;
      if (!within) return;
      EntryReader from(payload);
      run.start = readRunStart(from);
      run.fileBytes = from.text();
      readBehindFile(from, run.start);
    } else if (within && type == EntryType::RecordBegun) {
      const std::uint64_t begun = EntryReader(payload).number();
      // A record may begin anew, on another host; they end in their order.
      while (!run.records.empty() && run.records.back().record >= begun) run.records.pop_back();
    } else if (within && type == EntryType::RecordEnded) {
      run.records.push_back(readRecordEnd(EntryReader(payload)));
    } else if (within && type == EntryType::HostChanged) {
      run.hostChanges.push_back(readHostChange(EntryReader(payload)));
    } else if (within && type == EntryType::RunEnded) {
      run.end = readRunEnd(EntryReader(payload));
    }
  });
  return run;
}

}  // namespace velk
