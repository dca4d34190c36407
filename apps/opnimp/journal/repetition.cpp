#include "apps/opnimp/journal/repetition.h"

#include <algorithm>

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

/// Names the first of the records of which `whereElse` has a text; empty if it has none of any.
std::string placesText(const std::vector<JournaledRecord>& records, std::string_view placeWord,
                       const std::function<std::string(std::size_t record)>& whereElse,
                       std::size_t& count) {
  constexpr std::size_t mostNamed = 10;
  std::string places;
  for (std::size_t record = 0; record < records.size(); ++record) {
    const std::string elsewhere = whereElse(record);
    if (elsewhere.empty() || ++count > mostNamed) continue;
    places.append(count == 1 ? "" : ", ").append(placeWord).append(" ");
    places.append(std::to_string(records[record].line)).append(" (").append(elsewhere).append(")");
  }
  return places + (count > mostNamed ? ", ..." : "");
}

/// The records of the run that is about to begin, each with the first run that posted it; 0: none.
// Looked for in the journal, which may be long, and not the other way round.
using PostedBy = std::unordered_map<Digest, std::uint64_t, HashOfDigest>;

void addPosted(const RunSummary& run, PostedBy& records) {
  for (std::size_t record = 0; record < run.outcomes.size(); ++record) {
    const auto found = records.find(run.start.records[record].hash);
    if (found == records.end() || found->second != 0) continue;
    if (isInDatabase(run.outcome(record))) found->second = run.start.number;
  }
}

/// The records of the run, in each way in which earlier ones have theirs.
using Readings = std::vector<std::vector<JournaledRecord>>;

std::string recordsText(const PostedBy& posted, const Readings& readings,
                        std::string_view placeWord) {
  std::size_t count = 0;
  const std::string places = placesText(
      readings.front(), placeWord,
      [&](std::size_t record) {
        std::uint64_t number = 0;
        for (const auto& records : readings) {
          if (number == 0) number = posted.at(records[record].hash);
        }
        return number == 0 ? "" : "run " + std::to_string(number);
      },
      count);
  if (count == 0) return {};
  return counted(count, "record", "records") + " of this file " + (count == 1 ? "was" : "were") +
         " posted by an earlier run, or may have been: " + places +
         ". `opnimp report RUN` shows them; take them out of the file, or, if they belong there "
         "once more, import it with --again";
}

/// The runs before it that posted the same kind in the same database, but for those it goes on
/// with.
std::vector<const RunSummary*> comparable(const RunIndex& index, const RunStart& run) {
  const std::vector<const RunSummary*> resumed = index.takenUp(run.resumes);
  std::vector<const RunSummary*> earlier;
  for (const RunSummary& each : index.runs) {
    if (each.start.databaseId != run.databaseId || each.start.kind != run.kind) continue;
    if (std::ranges::count(resumed, &each) == 0) earlier.push_back(&each);
  }
  return earlier;
}

/// A reading is as good for all runs that have the same basis. One that met no record without a
/// date has none, and is the run's own as well.
Readings readingsFor(const std::vector<const RunSummary*>& earlier, const RunStart& run,
                     const HashedAs& hashedAs) {
  Readings readings{run.records};
  std::vector<std::pair<bool, std::optional<Date>>> known{{false, run.undated}};
  for (const RunSummary* each : earlier) {
    const RunStart& start = each->start;
    if (!start.isEarly && (!start.undated || !run.undated)) continue;
    const std::pair basis{start.isEarly, start.undated};
    if (std::ranges::count(known, basis) > 0) continue;
    known.push_back(basis);
    readings.push_back(hashedAs(start));
  }
  return readings;
}

}  // namespace

std::size_t HashOfDigest::operator()(const Digest& digest) const {
  std::size_t hash = 0;
  for (std::size_t i = 0; i < sizeof hash; ++i) hash = (hash << 8) | digest[i];
  return hash;
}

std::string repetitionRefusal(const RunIndex& index, const RunStart& run, const HashedAs& hashedAs,
                              std::string_view placeWord) {
  const std::vector<const RunSummary*> earlier = comparable(index, run);
  if (earlier.empty()) return {};
  PostedBy posted;
  const Readings readings = readingsFor(earlier, run, hashedAs);
  for (const auto& records : readings) {
    for (const JournaledRecord& record : records) posted.try_emplace(record.hash, 0);
  }
  for (const RunSummary* each : earlier) {
    if (fileOf(each->start) == fileOf(run)) {
      const std::size_t count = each->count(isInDatabase);
      if (count > 0) return fileText(*each, count);
    }
    addPosted(*each, posted);
  }
  return recordsText(posted, readings, placeWord);
}

std::string FilesOfCall::add(std::string_view file, const std::vector<JournaledRecord>& records,
                             std::string_view placeWord) {
  std::size_t count = 0;
  const std::string places = placesText(
      records, placeWord,
      [&](std::size_t record) {
        const auto found = records_.find(records[record].hash);
        if (found == records_.end()) return std::string();
        return std::string(placeWord) + " " + std::to_string(found->second.line) + " of " +
               std::string(found->second.file);
      },
      count);
  for (const JournaledRecord& record : records) {
    records_.try_emplace(record.hash, Place{file, record.line});
  }
  if (count == 0) return {};
  return counted(count, "record", "records") + " of this file " + (count == 1 ? "is" : "are") +
         " in another one of this call, too: " + places +
         ". Take them out of one of the files, or, if they belong there once more, import with "
         "--again";
}

}  // namespace velk
