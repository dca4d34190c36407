#include "apps/opnimp/journal/resumption.h"

#include <algorithm>
#include <optional>

namespace velk {

namespace {

/// Null if there is none.
const RunSummary* lastRunOf(const RunIndex& index, const KnownFile& file) {
  const auto found = std::find_if(index.runs.rbegin(), index.runs.rend(), [&](const auto& run) {
    return fileOf(run.start) == file && run.reached() > 0;
  });
  return found == index.runs.rend() ? nullptr : &*found;
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
    const std::size_t count = run->ended ? 0 : run->count(isRefused);
    if (count > 0) refused.push_back({run->start.number, count});
  }
  return refused;
}

std::size_t firstReached(const RunIndex& index, std::uint64_t number) {
  std::optional<std::size_t> first;
  for (const RunSummary* run : index.takenUp(number)) {
    const std::size_t begin = run->start.firstRecord;
    if (run->reached() > 0) first = std::min(first.value_or(begin), begin);
  }
  return first.value_or(0);
}

Resumption findResumption(const RunIndex& index, const KnownFile& file) {
  const RunSummary* const last = lastRunOf(index, file);
  if (last == nullptr) return {};
  Resumption resumption;
  resumption.run = last->start.number;
  resumption.history = last->history;
  resumption.count = last->start.firstRecord + last->start.records.size();
  resumption.first = firstReached(index, resumption.run);
  resumption.refused = refusedBefore(index, resumption.run);
  std::vector<const RunSummary*> runs = index.takenUp(resumption.run);
  std::ranges::stable_sort(runs, {}, [](const auto* run) { return run->start.firstRecord; });
  for (const RunSummary* run : runs) add(*run, resumption);
  return resumption;
}

}  // namespace velk
