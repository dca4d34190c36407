#include "apps/opnimp/journal/resumption.h"

#include <algorithm>

#include "apps/opnimp/cli/failures.h"

namespace velk {

namespace {

/// The first record that the run did not reach, by its place in the run. One that was taken back
/// has reached none: nothing of it stays.
std::size_t firstNotReached(const RunSummary& run) {
  if (run.count([](Outcome outcome) { return outcome == Outcome::TakenBack; }) > 0) return 0;
  std::size_t next = run.outcomes.size();
  while (next > 0 && run.outcome(next - 1) == Outcome::NotReached) --next;
  return next;
}

}  // namespace

std::vector<RefusedBefore> refusedBefore(const RunIndex& index, std::uint64_t number) {
  std::vector<RefusedBefore> refused;
  for (const RunSummary* run : index.chain(number)) {
    const std::size_t count = run->ended ? 0 : run->count(isRefused);
    if (count > 0) refused.push_back({run->start.number, count});
  }
  return refused;
}

Resumption findResumption(const RunIndex& index, const KnownFile& file) {
  const auto found = std::find_if(index.runs.rbegin(), index.runs.rend(), [&](const auto& run) {
    const RunStart& start = run.start;
    return start.kind == file.kind && start.databaseId == file.databaseId &&
           start.fileHash == file.hash && (firstNotReached(run) > 0 || start.resumes != 0);
  });
  if (found == index.runs.rend()) {
    throw UsageError(
        "--resume: the journal has no run of this file, as it is now, in this database; "
        "`opnimp runs` lists those that it has");
  }
  const std::size_t reached = firstNotReached(*found);
  if (reached == found->outcomes.size()) {
    const std::string number = std::to_string(found->start.number);
    throw UsageError("--resume: run " + number + " reached all records of the file, or may have; " +
                     "there is nothing to go on with. `opnimp rejects " + number +
                     " FILE` writes those that it refused or left in doubt");
  }
  Resumption resumption{&found->start, found->start.firstRecord + reached, found->start.setApart,
                        refusedBefore(index, found->start.number)};
  for (std::size_t record = 0; record < reached; ++record) {
    if (!isDoubtful(found->outcome(record))) continue;
    resumption.doubtful.push_back(found->start.firstRecord + record);
  }
  return resumption;
}

}  // namespace velk
