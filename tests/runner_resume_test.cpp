// What runs leave that were killed or interrupted, and how others go on with them.
#include <filesystem>
#include <fstream>
#include <thread>

#include "apps/opnimp/journal/record_hash.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/run/journal_choice.h"
#include "platform/native/native_kept_file.h"
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
  world.surroundings.interrupted = [left = static_cast<int>(records) + 1,
                                    self = std::this_thread::get_id()]() mutable {
    return std::this_thread::get_id() != self && left-- <= 0;
  };
  const Ran ran = world.import(file, more);
  world.surroundings.interrupted = [] { return false; };
  return ran;
}

/// How many notes there are for the records of longFile from `first` to `last`.
std::string notes(RunnerWorld& world, std::size_t first, std::size_t last) {
  return world.ask(
      "select count(*) from CustomerDebitNote where cast(substr(DocReference, 2) as "
      "integer) between " +
      std::to_string(first) + " and " + std::to_string(last));
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

TEST_CASE("a whole run that was killed before it was to be kept has left nothing") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", longFile(9));
  const std::string rejects = world.folder.path("r.csv");
  CHECK(interruptedImport(world, file, 5, {"--all-or-nothing"}).status == 5);
  loseEntries(world, 1);
  const Json report(world.run({"report", "1", "--json"}).out);
  CHECK(report.at("account.outcomes.taken-back.count") == "5");
  CHECK(report.at("account.outcomes.not-reached.count") == "4");
  CHECK(world.import(file, {"--dry-run"}).status == 0);
  const Json all(world.import(file, {"--all-or-nothing", "--resume", "--json"}).out);
  CHECK(all.at("status") == "0");
  CHECK(notes(world, 1, 9) == "9");
}

TEST_CASE("a resumed run goes on behind the one that broke off, as often as it takes") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", longFile(30));
  CHECK(world.import(file, {"--resume"}).status == 3);
  for (const char* option : {"--json", "--resume"}) {
    CHECK(interruptedImport(world, file, 10, {option}).status == 5);
  }
  CHECK(notes(world, 1, 20) == "20");
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
  const std::string first = world.run({"report", "1"}).out;
  CHECK_MESSAGE(contains(first, "what run 3 reached since: it took up 10 records"), first);
  CHECK_FALSE(contains(first, "Next:      Import "));
  CHECK(world.run({"rejects", "1", world.folder.path("first.csv")}).status == 0);
  CHECK_FALSE(world.folder.has("first.csv.rest.csv"));
  world.folder.write("in.csv", longFile(31));
  CHECK(world.import(file, {"--resume"}).status == 3);
}

TEST_CASE("a file is taken up behind what all its runs reached, and not behind records left out") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", longFile(6));
  CHECK(interruptedImport(world, file, 2, {}).status == 5);
  const Ran part = world.import(file, {"--from-line", "6", "--again"});
  CHECK(part.status == 0);
  CHECK(contains(part.out, "Nothing was done with the 4 records of the file before"));
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
  run.outcomes[7] = run.outcomes[8] = Outcome::Posted;
  run.synced = 8;
  CHECK(run.outcome(9) == Outcome::Unknown);
  CHECK(run.outcome(10) == Outcome::NotReached);
  CHECK(run.outcome(8) == Outcome::Posted);
  run.powerLost = true;
  CHECK(run.outcome(7) == Outcome::Posted);
  CHECK(run.outcome(8) == Outcome::Unknown);
  CHECK(run.outcome(9 + recordsBetweenSyncs) == Outcome::Unknown);
  CHECK(run.outcome(10 + recordsBetweenSyncs) == Outcome::NotReached);
  run.ended = true;
  CHECK(run.outcome(10) == Outcome::NotReached);
}
