#include "apps/opnimp/journal/resumption.h"

#include <algorithm>
#include <optional>

namespace velk {

namespace {

/// The last one that reached a record; else the last that began one, and was taken back. Null if
/// there is none.
const RunSummary* lastRunOf(const RunIndex& index, const KnownFile& file) {
  const auto last = [&](auto hasBegun) {
    const auto run = std::find_if(index.runs.rbegin(), index.runs.rend(), [&](const auto& each) {
      return fileOf(each.start) == file && hasBegun(each);
    });
    return run == index.runs.rend() ? nullptr : &*run;
  };
  const RunSummary* const reached = last([](const RunSummary& run) { return run.reached() > 0; });
  if (reached != nullptr) return reached;
  return last([](const RunSummary& run) { return run.begun > 0; });
}

/// Notes what the run reached, all those before it in the file being noted.
void add(const RunSummary& run, Resumption& resumption) {
  const std::size_t first = run.start.firstRecord;
  const std::size_t reached = run.reached();
  if (reached == 0) return;
  // What stands before the first of all is told by itself: it may be none of this import.
  if (resumption.next > 0 && resumption.next < first && resumption.gapEnd == 0) {
    resumption.gapFirst = resumption.next;
    resumption.gapEnd = first;
  }
  resumption.next = first + reached;
  for (std::size_t record = 0; record < reached; ++record) {
    if (isDoubtful(run.outcome(record))) resumption.doubtful.push_back(first + record);
  }
}

}  // namespace

std::vector<RefusedBefore> refusedBefore(const RunIndex& index, std::uint64_t number) {
  std::vector<RefusedBefore> refused;
  for (const RunSummary* run : index.takenUp(number)) {
    const bool isTold = run->ended || run->isTakenBack();
    const std::size_t count = isTold ? 0 : run->count(isRefused);
    if (count > 0) refused.push_back({run->start.number, count});
  }
  return refused;
}

std::vector<std::uint64_t> laterRuns(const RunIndex& index, const RunSummary& run) {
  std::vector<std::uint64_t> later(run.outcomes.size());
  const KnownFile file = fileOf(run.start);
  const std::size_t first = run.start.firstRecord;
  for (const RunSummary& each : index.runs) {
    if (each.start.number <= run.start.number || fileOf(each.start) != file) continue;
    const std::size_t begin = each.start.firstRecord;
    const std::size_t end = std::min(begin + each.reached(), first + later.size());
    for (std::size_t record = std::max(begin, first); record < end; ++record) {
      later[record - first] = each.start.number;
    }
  }
  return later;
}

std::size_t firstReached(const RunIndex& index, std::uint64_t number) {
  std::optional<std::size_t> first;
  for (const RunSummary* run : index.takenUp(number)) {
    const std::size_t begin = run->start.firstRecord;
    if (run->reached() > 0) first = std::min(first.value_or(begin), begin);
  }
  const RunSummary* const begun = index.find(number);
  return first.value_or(begun == nullptr ? 0 : begun->start.firstRecord);
}

Resumption findResumption(const RunIndex& index, const KnownFile& file) {
  const RunSummary* const last = lastRunOf(index, file);
  if (last == nullptr) return {};
  Resumption resumption;
  resumption.run = last->start.number;
  resumption.history = last->history;
  resumption.count = last->start.firstRecord + last->start.records.size();
  resumption.first = firstReached(index, resumption.run);
  if (last->reached() == 0) resumption.next = resumption.first;
  resumption.refused = refusedBefore(index, resumption.run);
  std::vector<const RunSummary*> runs = index.takenUp(resumption.run);
  std::ranges::stable_sort(runs, {}, [](const auto* run) { return run->start.firstRecord; });
  for (const RunSummary* run : runs) add(*run, resumption);
  return resumption;
}

}  // namespace velk
