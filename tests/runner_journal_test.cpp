// What the journal knows of runs: that nothing is posted twice, what a run that was killed leaves,
// and the reports, reversals and rejects that come from it.
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

constexpr std::string_view firstGood = "C001,A,R1,03/03/2008,100.00,60.00";
constexpr std::string_view secondGood = "C002,B,R2,04/03/2008,-50.25,-20.10";
constexpr std::string_view thirdGood = "C003,C,R3,,10.00,10.00";
constexpr std::string_view strangersRecord = "C999,X,R4,03/03/2008,1.00,1.00";

std::string documents(RunnerWorld& world) {
  return world.ask(
      "select (select count(*) from CustomerDebitNote) || '+' || (select count(*) "
      "from CustomerCreditNote)");
}

/// The report of a run, without what it says of the files of rejects.
std::string reportOf(std::string text) {
  for (const std::string_view begin : {"Written: ", "Next: "}) {
    for (std::size_t at = 0; (at = text.find(begin, at)) != std::string::npos;) {
      text.erase(at, text.find('\n', at) + 1 - at);
    }
  }
  return text;
}

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

/// Cuts off the journal's last entries, as if the last run had been killed before them.
void loseEntries(const RunnerWorld& world, std::size_t count) {
  const std::string path = chooseJournal({}, world.surroundings);
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), {}};
  std::vector<std::size_t> starts;
  for (std::size_t at = 8; at < bytes.size();) {
    starts.push_back(at);
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
  return openJournal(path, KeptFor::Reading, world.surroundings, err).index;
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

TEST_CASE("what an earlier run posted is refused, and --again posts it") {
  RunnerWorld world;
  CHECK(world.importLines({openingTitles, firstGood, strangersRecord, secondGood}).status == 1);
  const struct {
    std::vector<std::string_view> lines;
    std::vector<std::string> more;
    int status;
    std::string_view says;
  } rows[] = {
      {{openingTitles, firstGood, strangersRecord, secondGood}, {}, 2, "run 1 of 2008-04-01"},
      {{openingTitles, firstGood, strangersRecord, secondGood}, {"--dry-run"}, 2, "2 records of 3"},
      // Another file: the same record in another order of columns, written in another way.
      {{"Balance,Bill Amount,Customer ID,Date,Reference", "5,5,C001,1/3/2008,R9",
        "60,1e2,C001,3 March 2008,R1"},
       {},
       2,
       "1 record of this file was posted by an earlier run, or may have been: line 3 (run 1)"},
      {{openingTitles, thirdGood, "C004,D,R4,,5,5", "C004,D,R4,,5,5"},
       {"--accept", "all"},
       1,
       "run 2"},
      // What was refused is not in the database.
      {{openingTitles, strangersRecord}, {}, 1, "run 3"},
      {{openingTitles, "C001,A,R1,03/03/2008,100.00,60.01"}, {}, 0, "run 4"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.says);
    std::string text;
    for (const std::string_view line : row.lines) text.append(line).append("\r\n");
    const Ran ran = world.import(world.folder.write("in.csv", text), row.more);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(contains(ran.out, row.says), ran.out);
  }
  CHECK(documents(world) == "5+1");
  CHECK(world.importLines({openingTitles, firstGood}, {"--again"}).status == 0);
  CHECK(documents(world) == "6+1");

  // The same file means nothing for another database, and another journal knows nothing of it.
  const std::string file = world.folder.write("in.csv", crlf({openingTitles, firstGood}));
  const std::string copy = world.folder.write("moved.db", world.folder.read("company.db"));
  CHECK(world.import(file, {"--database", copy}).status == 2);
  const std::string fresh = world.folder.path("fresh.db");
  CHECK(world.run({"demo-database", fresh}).status == 0);
  CHECK(world.import(file, {"--database", fresh}).status == 0);
  CHECK(world.import(file, {"--journal", world.folder.path("other")}).status == 0);
}

TEST_CASE("master data is imported again by design") {
  RunnerWorld world;
  world.kind = "bank-branch";
  const std::initializer_list<std::string_view> lines{"Bank Code,Bank Name,Branch Code,Branch Name",
                                                      "B1,Bank,R1,Branch"};
  CHECK(world.importLines(lines).status == 0);
  CHECK(world.importLines(lines).status != 2);
}

TEST_CASE("reports, rejects and the list of runs come from the journal alone") {
  RunnerWorld world;
  const std::string rejects = world.folder.path("r.csv");
  const Ran first =
      world.importLines({openingTitles, firstGood, strangersRecord, "C002,B,,,1,5", secondGood},
                        {"--rejects", rejects});
  CHECK(first.status == 1);
  std::filesystem::remove(world.folder.path("in.csv"));
  std::filesystem::remove(world.database());
  const Ran report = world.run({"report", "1"});
  CHECK(report.status == 1);
  CHECK(contains(reportOf(report.out), reportOf(first.out)));
  const Json json(world.run({"report", "1", "--json"}).out);
  CHECK(json.outcomes() == "posted rejected posted-with-warning posted");
  CHECK(json.at("records[0].calls[1].parameters[0]") == "C001");
  CHECK(json.at("records[1].log[0].kept") == "file");
  CHECK(json.at("account.addsUp") == "true");
  CHECK(world.run({"report", "1", "--html", world.folder.path("page.html")}).status == 1);
  CHECK(contains(world.folder.read("page.html"), "Customer does not exist for code - C999"));
  CHECK(world.run({"report", "1", "--html", world.folder.path("page.html")}).status == 3);
  CHECK(contains(world.run({"runs"}).out, "2 posted, 1 posted with warning, 1 rejected"));
  const Json runs(world.run({"runs", "--json"}).out);
  CHECK(runs.at("runs[0].end") == "ended");
  CHECK(runs.at("runs[0].outcomes.rejected") == "1");

  const std::string later = world.folder.path("later.csv");
  CHECK(world.run({"rejects", "1", later}).status == 0);
  CHECK(world.folder.read("later.csv") == world.folder.read("r.csv"));
  CHECK(world.folder.read("later.csv.reasons.csv") == world.folder.read("r.csv.reasons.csv"));
}

TEST_CASE("the journal's report of a run has the run's own account") {
  const struct {
    std::vector<std::string_view> lines;
    std::vector<std::string> more;
    std::string_view outcomes;
  } rows[] = {
      {{firstGood, strangersRecord, secondGood}, {}, "posted rejected posted"},
      {{firstGood, strangersRecord, secondGood},
       {"--all-or-nothing"},
       "taken-back rejected taken-back"},
      {{firstGood, secondGood}, {"--all-or-nothing"}, "posted posted"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.outcomes);
    RunnerWorld world;
    std::string text = std::string(openingTitles) + "\r\n";
    for (const std::string_view line : row.lines) text.append(line).append("\r\n");
    std::vector<std::string> options = row.more;
    options.emplace_back("--json");
    const Json told(world.import(world.folder.write("in.csv", text), options).out);
    CHECK(told.outcomes() == row.outcomes);
    const Json kept(world.run({"report", "1", "--json"}).out);
    for (const char* part : {"status", "account", "records", "next"}) {
      CHECK(kept.at(part) == told.at(part));
    }
  }
}

TEST_CASE("whether a whole run that was killed was kept is not known") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", crlf({openingTitles, firstGood}));
  CHECK(world.import(file, {"--all-or-nothing"}).status == 0);
  loseEntries(world, 1);
  const Json report(world.run({"report", "1", "--json"}).out);
  CHECK(report.outcomes() == "unknown");
  CHECK(report.at("account.notes.count") == "0");
}

TEST_CASE("a command that cannot do what it is asked for says why and writes nothing") {
  RunnerWorld world;
  world.kind = "bank-branch";
  CHECK(world.importLines({"Bank Code,Bank Name,Branch Code,Branch Name", "B1,B,R1,B"}).status ==
        0);
  const std::string there = world.folder.write("there.csv", "mine");
  const std::string fresh = world.folder.path("fresh.csv");
  const std::string other = world.folder.write("other", "Customer ID\r\n");
  const struct {
    std::vector<std::string> args;
    int status;
    std::string_view says;
  } rows[] = {
      {{"report", "0"}, 3, "RUN is the number of a run"},
      {{"report", "1x"}, 3, "RUN is the number of a run"},
      {{"report", "2"}, 3, "has no run 2"},
      {{"report", "1", "--journal", world.folder.path("none")}, 3, "has no run 1"},
      {{"runs", "--journal", other}, 4, "is no journal"},
      {{"runs", "--journal", world.folder.path("")}, 4, "could not be read"},
      {{"reversal", "1", fresh}, 3, "master data, which has no opposite"},
      {{"reversal", "1", there}, 3, "there is a file"},
      {{"rejects", "1", there}, 3, "there is a file"},
      {{"rejects", "7", fresh}, 3, "has no run 7"},
      {{"rejects", "1", world.folder.path("no/where.csv")}, 4, "cannot be written"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.says);
    const Ran ran = world.run(row.args);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
  }
  CHECK(world.folder.read("there.csv") == "mine");
  CHECK_FALSE(world.folder.has("fresh.csv"));
  const Ran none = world.run({"runs", "--journal", world.folder.path("none")});
  CHECK(none.status == 0);
  CHECK(contains(none.out, "no runs yet"));
}

TEST_CASE("a journal that cannot be written lets nothing be posted") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", crlf({openingTitles, firstGood}));
  const std::string other = world.folder.write("other", "Customer ID\r\n");
  CHECK(world.import(file, {"--journal", other}).status == 4);
  CHECK(world.import(file, {"--journal", world.folder.path("")}).status == 4);
  CHECK(world.import(file, {"--journal", file}).status == 3);
  CHECK(world.import(file, {"--journal", world.database()}).status == 3);
  CHECK(world.import(file, {"--journal", "r", "--rejects", "r"}).status == 3);
  world.surroundings.stateFolder.clear();
  CHECK(contains(world.import(file).err, "neither XDG_STATE_HOME nor HOME is set"));
  const std::string journal = world.folder.path("journal");
  {
    const auto held = openKept(journal, KeptFor::Writing);
    const Ran ran = world.import(file, {"--journal", journal});
    CHECK(ran.status == 4);
    CHECK(contains(ran.err, "in use by another run"));
  }
  CHECK(documents(world) == "0+0");
  CHECK(world.folder.read("other") == "Customer ID\r\n");
  CHECK(world.import(file, {"--journal", journal}).status == 0);
}

TEST_CASE("the opposite documents of a run bring each party back to zero") {
  RunnerWorld world;
  const Ran ran =
      world.importLines({openingTitles, firstGood, secondGood, thirdGood, strangersRecord,
                         "C004,\"D \"\"x\"\"\",\"R \"\"5\"\"\",,-8,-7"},
                        {"--accept", "all"});
  CHECK(ran.status == 1);
  const std::string file = world.folder.path("reversal.csv");
  const Ran written = world.run({"reversal", "1", file});
  CHECK_MESSAGE(written.status == 0, written.err);
  CHECK(contains(written.out, "4 documents"));
  CHECK(world.ask("select count(*) from CustomerOpeningBalance where OpeningBalance <> 0") == "4");
  const Ran reversed = world.import(file);
  CHECK_MESSAGE(reversed.status == 0, reversed.out);
  CHECK(world.ask("select count(*) from CustomerOpeningBalance") == "4");
  CHECK(world.ask("select count(*) from CustomerOpeningBalance where OpeningBalance <> 0") == "0");
  CHECK(documents(world) == "4+4");
  CHECK(world.ask("select count(*) from (select CustomerID, DocReference, DocumentDate, Amount, "
                  "Balance from CustomerDebitNote intersect select CustomerID, DocReference, "
                  "DocumentDate, Amount, Balance from CustomerCreditNote)") == "4");
  CHECK(world.import(file).status == 2);
}

TEST_CASE("a rejects file that somebody else has made is never replaced") {
  RunnerWorld world;
  const std::string rejects = world.folder.path("r.csv");
  for (const char* name : {"r.csv", "r.csv.reasons.csv", "r.csv.check.csv", "r.csv.rest.csv"}) {
    CAPTURE(name);
    world.folder.write(name, "mine");
    const Ran ran = world.importLines({openingTitles, strangersRecord}, {"--rejects", rejects});
    CHECK(ran.status == 3);
    CHECK(world.folder.read(name) == "mine");
    std::filesystem::remove(world.folder.path(name));
  }
  // One that appears while the run goes on.
  world.surroundings.interrupted = [&] {
    world.folder.write("r.csv", "mine");
    return false;
  };
  const Ran ran = world.importLines({openingTitles, strangersRecord}, {"--rejects", rejects});
  CHECK(ran.status == 5);
  CHECK(contains(ran.out, "since the run began"));
  CHECK(world.folder.read("r.csv") == "mine");
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
      CHECK(documents(world) == "0+0");
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

TEST_CASE("what runs that were killed left is told by each run that goes on with them") {
  RunnerWorld world;
  const std::string file =
      world.folder.write("in.csv", crlf({openingTitles, firstGood, strangersRecord, secondGood,
                                         thirdGood, "C004,D,R5,,5,5", "C004,D,R6,,5,5"}));
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
  CHECK(contains(world.folder.read("third.csv.check.csv"), secondGood));
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
    const std::string file = world.folder.write(
        "in.csv", crlf({openingTitles, firstGood, secondGood, strangersRecord, thirdGood}));
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
