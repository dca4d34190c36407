// What runs leave that were killed or interrupted, and how others go on with them.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "apps/opnimp/journal/record_hash.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/run/journal_choice.h"
#include "platform/native/native_kept_file.h"
#include "tests/support/checks.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

namespace {

/// Opening balances of distinct references, enough that a run takes a while.
std::string longFile(std::size_t records) {
  std::string text = std::string(openingTitles) + "\r\n";
  for (std::size_t i = 1; i <= records; ++i) {
    const std::string number = std::to_string(i);
    text += "C00" + std::to_string(1 + i % 9) + ",N,R" + number + ",03/03/2008," + number + "," +
            number + "\r\n";
  }
  return text;
}

/// Imports in a process of its own, which is killed after a while.
void killedImport(RunnerWorld& world, const std::string& file, const std::vector<std::string>& more,
                  std::chrono::microseconds after) {
  world.database();  // made by this process
  const pid_t child = ::fork();
  if (child == 0) {
    world.import(file, more);
    ::_exit(0);
  }
  std::this_thread::sleep_for(after);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
}

/// Cuts off the journal's last entries, marks of syncs not counted, as if the last run had been
/// killed before them.
void loseEntries(const RunnerWorld& world, std::size_t count) {
  const std::string path = chooseJournal({}, world.surroundings);
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), {}};
  std::vector<std::size_t> starts;
  for (std::size_t at = 8; at < bytes.size();) {
    if (bytes[at + 4] != static_cast<char>(EntryType::Synced)) starts.push_back(at);
    std::size_t length = 0;
    for (std::size_t i = 4; i-- > 0;)
      length = length * 256 + static_cast<unsigned char>(bytes[at + i]);
    at += length + 9;
  }
  std::filesystem::resize_file(path, starts.at(starts.size() - count));
}

/// Imports as many records, and is then interrupted.
Ran interruptedImport(RunnerWorld& world, const std::string& file, std::size_t records,
                      const std::vector<std::string>& more) {
  // Asked once before the run, and before each record.
  world.surroundings.interrupted = [left = static_cast<int>(records) + 1]() mutable {
    return left-- <= 0;
  };
  const Ran ran = world.import(file, more);
  world.surroundings.interrupted = [] { return false; };
  return ran;
}

RunIndex indexOf(const RunnerWorld& world) {
  std::ostringstream err;
  const std::string path = chooseJournal({}, world.surroundings);
  Events events(Streams{err, err}, false);
  return openJournal(path, KeptFor::Reading, world.surroundings, events).index;
}

/// How many notes there are for the records of longFile from `first` to `last`.
std::string notes(RunnerWorld& world, std::size_t first, std::size_t last) {
  return world.ask(
      "select count(*) from CustomerDebitNote where cast(substr(DocReference, 2) as "
      "integer) between " +
      std::to_string(first) + " and " + std::to_string(last));
}

/// Holds a run's word on each record against the database. Answers how many are in doubt.
std::size_t checkAgainstDatabase(RunnerWorld& world, const RunSummary& run) {
  std::size_t doubtful = 0;
  std::size_t sum = 0;
  std::size_t inDoubt = 0;
  for (std::size_t record = 0; record < run.outcomes.size(); ++record) {
    const std::size_t number = record + 1;
    const Outcome outcome = run.outcome(record);
    if (outcome == Outcome::Unknown) {
      ++doubtful;
      inDoubt = number;
    } else if (outcome == Outcome::Posted) {
      sum += number;
    }
  }
  const std::size_t posted = run.begun - doubtful;
  CHECK(notes(world, 1, posted) == std::to_string(posted));
  CHECK(notes(world, run.begun + 1, run.outcomes.size()) == "0");
  const auto entries = static_cast<std::size_t>(
      std::stod(world.ask("select ifnull(sum(OpeningBalance), 0) from CustomerOpeningBalance")));
  CHECK((entries == sum || entries == sum + inDoubt));
  return doubtful;
}

}  // namespace

TEST_CASE("whether a whole run that was killed was kept is not known") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", crlf({openingTitles, good1}));
  CHECK(world.import(file, {"--all-or-nothing"}).status == 0);
  loseEntries(world, 1);
  const Json report(world.run({"report", "1", "--json"}).out);
  CHECK(report.outcomes() == "unknown");
  CHECK(report.at("account.notes.count") == "0");
}

TEST_CASE("a run killed at any moment leaves one record in doubt at most, and can be resumed") {
  constexpr std::size_t records = 400;
  std::mt19937 random{std::random_device()()};
  std::chrono::microseconds whole{0};
  {
    RunnerWorld world;
    world.database();
    const std::string file = world.folder.write("in.csv", longFile(records));
    const auto start = std::chrono::steady_clock::now();
    CHECK(world.import(file).status == 0);
    whole = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() -
                                                                  start);
  }
  std::size_t midway = 0;
  for (int round = 0; round < 100 && midway < 8; ++round) {
    RunnerWorld world;
    const std::string file = world.folder.write("in.csv", longFile(records));
    std::uniform_int_distribution<long long> moment(0, whole.count());
    killedImport(world, file, {}, std::chrono::microseconds(moment(random)));
    const RunIndex index = indexOf(world);
    if (index.runs.empty()) {
      CHECK(notes(world, 1, records) == "0");
      continue;
    }
    const RunSummary& run = index.runs.back();
    const std::size_t doubtful = checkAgainstDatabase(world, run);
    CHECK(doubtful <= 1);
    if (run.completed) continue;
    const Ran report = world.run({"report", "1"});
    CHECK(report.status == 5);
    CHECK(contains(report.out, "it did not end by itself"));
    CHECK(contains(report.out, ") unknown: the run broke off") == (doubtful == 1));
    if (run.begun == 0 || run.begun == records) continue;
    ++midway;
    CHECK(world.import(file).status == 2);

    const std::string before = notes(world, 1, run.begun);
    const Ran resumed = world.import(file, {"--resume", "--rejects", world.folder.path("r.csv")});
    CHECK_MESSAGE(resumed.status == static_cast<int>(doubtful), resumed.out << resumed.err);
    CHECK(notes(world, 1, run.begun) == before);
    CHECK(notes(world, run.begun + 1, records) == std::to_string(records - run.begun));
    CHECK(world.folder.has("r.csv.check.csv") == (doubtful == 1));
    if (doubtful == 1) {
      const std::string number = std::to_string(run.begun);
      CHECK(contains(world.folder.read("r.csv.check.csv"), ",R" + number + ","));
    }
    CHECK(world.import(file, {"--resume"}).status == 3);
  }
  CHECK(midway == 8);
}

TEST_CASE("a resumed run goes on behind the one that broke off, as often as it takes") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", longFile(30));
  CHECK(world.import(file, {"--resume"}).status == 3);
  for (const char* option : {"--json", "--resume"}) {
    // Once before the run, and before each record.
    world.surroundings.interrupted = [left = 11]() mutable { return left-- <= 0; };
    CHECK(world.import(file, {option}).status == 5);
  }
  CHECK(notes(world, 1, 20) == "20");
  world.surroundings.interrupted = [] { return false; };
  const Ran other = world.import(file, {"--resume", "--map", "Reference=#2", "--accept", "all"});
  CHECK(contains(other.out, "give the same --map"));
  const Json last(world.import(file, {"--resume", "--json"}).out);
  CHECK(last.at("status") == "0");
  CHECK(last.at("resumes") == "2");
  CHECK(last.at("records[0].line") == "22");
  CHECK(last.at("account.fileRecords") == "10");
  CHECK(notes(world, 1, 30) == "30");
  CHECK(world.ask("select count(*) from CustomerDebitNote") == "30");
  CHECK(contains(world.run({"report", "3"}).out, "Resumes:  run 2"));
  world.folder.write("in.csv", longFile(31));
  CHECK(world.import(file, {"--resume"}).status == 3);
}

TEST_CASE("a file is taken up behind what all its runs reached, and not behind records left out") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", longFile(6));
  CHECK(interruptedImport(world, file, 2, {}).status == 5);
  CHECK(world.import(file, {"--from-line", "6", "--again"}).status == 0);
  const Ran gap = world.import(file, {"--resume"});
  CHECK(gap.status == 3);
  CHECK_MESSAGE(contains(gap.err, "from line 4 to line 5"), gap.err);
  CHECK(interruptedImport(world, file, 1, {"--from-line", "4", "--again"}).status == 5);
  CHECK(contains(world.import(file, {"--resume"}).err, "from line 5 to line 5"));
  // From its first record on once more: what was before does not count.
  CHECK(interruptedImport(world, file, 4, {"--again"}).status == 5);
  CHECK(contains(world.import(file, {"--resume"}).out, "posted this file already"));
  const Json last(world.import(file, {"--resume", "--again", "--json"}).out);
  CHECK(last.at("resumes") == "4");
  CHECK(last.at("records[0].line") == "6");
  CHECK(last.at("account.fileRecords") == "2");
}

TEST_CASE("what runs that were killed left is told by each run that goes on with them") {
  RunnerWorld world;
  const std::string file =
      world.folder.write("in.csv", crlf({openingTitles, good1, unknownCustomer, good2, good3,
                                         "C004,D,R5,,5,5", "C004,D,R6,,5,5"}));
  CHECK(interruptedImport(world, file, 3, {}).status == 5);
  loseEntries(world, 2);  // and what became of the last record
  const auto resume = [&](const char* rejects) {
    return std::vector<std::string>{"--resume", "--json", "--rejects", world.folder.path(rejects)};
  };
  CHECK(interruptedImport(world, file, 1, resume("second.csv")).status == 5);
  loseEntries(world, 1);
  const Json last(world.import(file, resume("third.csv")).out);
  CHECK(last.at("status") == "1");
  CHECK(last.at("setApart") == "1");
  CHECK(contains(world.folder.read("third.csv.check.csv"), good2));
  CHECK(last.at("refusedBefore") == R"([{"run":1,"records":1}])");
  CHECK(last.at("part") == R"({"line":6,"records":2,"of":6})");
  CHECK(contains(last.at("next[1]"), "Run 1 refused 1 record: `opnimp rejects 1 FILE`"));
  const Json kept(world.run({"report", "3", "--json"}).out);
  for (const char* part : {"status", "setApart", "refusedBefore", "part", "records"}) {
    CHECK(kept.at(part) == last.at(part));
  }
  constexpr std::string_view partly = "2 of 6 records of the file, from line 6 on";
  CHECK(contains(world.run({"report", "3", "--html", world.folder.path("page.html")}).out, partly));
  CHECK(contains(world.folder.read("page.html"), partly));
}

TEST_CASE("what a part of a file is to be imported with again") {
  const struct {
    std::vector<std::string> more;
    std::size_t records;  // before it is interrupted
    std::string_view next;
  } rows[] = {
      {{"--resume"}, 0, "import the file with --resume again"},
      {{"--resume", "--all-or-nothing"}, 1, "import the file with --resume again"},
      {{"--resume", "--all-or-nothing"}, 9, "import the file with --from-line 3 again"},
      {{"--resume", "--map", "Reference=#2", "--accept", "all"}, 9, "--resume again; if the file"},
      {{"--from-line", "3"}, 0, "import the file with --from-line 3 again"},
      {{"--from-line", "3", "--all-or-nothing"}, 9, "import the file with --from-line 3 again"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.next);
    RunnerWorld world;
    const std::string file =
        world.folder.write("in.csv", crlf({openingTitles, good1, good2, unknownCustomer, good3}));
    if (row.more[0] == "--resume") CHECK(interruptedImport(world, file, 1, {}).status == 5);
    const Ran ran = interruptedImport(world, file, row.records, row.more);
    CHECK_MESSAGE(contains(ran.out, row.next), ran.out);
    for (const char* whole :
         {"import the file again", "import the whole file again", "import it again"})
      CHECK_FALSE(contains(ran.out, whole));
  }
}

TEST_CASE("after a loss of power all that the journal may have lost is in doubt") {
  RunSummary run;
  run.outcomes.resize(recordsBetweenSyncs + 20);
  run.begun = 10;
  run.outcomes[8] = Outcome::Posted;
  CHECK(run.outcome(9) == Outcome::Unknown);
  CHECK(run.outcome(10) == Outcome::NotReached);
  run.powerLost = true;
  CHECK(run.outcome(8) == Outcome::Posted);
  CHECK(run.outcome(9 + recordsBetweenSyncs) == Outcome::Unknown);
  CHECK(run.outcome(10 + recordsBetweenSyncs) == Outcome::NotReached);
  run.ended = true;
  CHECK(run.outcome(10) == Outcome::NotReached);
}
