#include "apps/opnimp/journal/repetition.h"

#include <algorithm>
#include <map>
#include <vector>

#include "apps/opnimp/cli/printable.h"

namespace velk {

namespace {

/// What importing again could post twice.
bool isInDatabase(Outcome outcome) {
  return isPosted(outcome) || isDoubtful(outcome);
}

std::string fileText(const RunSummary& run, std::size_t count) {
  const std::string number = std::to_string(run.start.number);
  const bool reachedAll = run.outcome(run.outcomes.size() - 1) != Outcome::NotReached;
  const std::string rest = reachedAll && run.ended
                               ? "`opnimp rejects " + number + " FILE` writes those that it refused"
                               : "--resume goes on behind them";
  return "run " + number + " of " + formatIso(run.start.time) +
         " posted this file already, or may "
         "have: " +
         counted(count, "record", "records") + " of " + grouped(run.outcomes.size()) +
         ". `opnimp report " + number + "` shows them; " + rest +
         "; --again posts the whole file once more";
}

/// Each hash with the first run that posted it.
using PostedRecords = std::map<Digest, std::uint64_t>;

void addPosted(const RunSummary& run, PostedRecords& posted) {
  for (std::size_t record = 0; record < run.outcomes.size(); ++record) {
    if (!isInDatabase(run.outcome(record))) continue;
    posted.try_emplace(run.start.records[record].hash, run.start.number);
  }
}

std::string recordsText(const PostedRecords& posted, const RunStart& run,
                        std::string_view placeWord) {
  constexpr std::size_t mostNamed = 10;
  std::string places;
  std::size_t count = 0;
  for (const JournaledRecord& record : run.records) {
    const auto found = posted.find(record.hash);
    if (found == posted.end() || ++count > mostNamed) continue;
    places.append(count == 1 ? "" : ", ").append(placeWord).append(" ");
    places.append(std::to_string(record.line)).append(" (run ");
    places.append(std::to_string(found->second)).append(")");
  }
  if (count == 0) return {};
  return counted(count, "record", "records") + " of this file " + (count == 1 ? "was" : "were") +
         " posted by an earlier run, or may have been: " + places +
         (count > mostNamed ? ", ..." : "") +
         ". `opnimp report RUN` shows them; take them out of the file, or, if they belong there "
         "once more, import it with --again";
}

}  // namespace

std::string repetitionRefusal(const RunIndex& index, const RunStart& run,
                              std::string_view placeWord) {
  const std::vector<const RunSummary*> resumed = index.chain(run.resumes);
  PostedRecords posted;
  for (const RunSummary& earlier : index.runs) {
    const RunStart& start = earlier.start;
    if (start.databaseId != run.databaseId || start.kind != run.kind) continue;
    if (std::ranges::count(resumed, &earlier) > 0) continue;
    const std::size_t count = earlier.count(isInDatabase);
    if (start.fileHash == run.fileHash && count > 0) return fileText(earlier, count);
    addPosted(earlier, posted);
  }
  return recordsText(posted, run, placeWord);
}

}  // namespace velk
