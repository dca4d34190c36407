// What the journal knows of runs: that nothing is posted twice, and the reports, reversals and
// rejects that come from it.
#include <array>
#include <filesystem>

#include "apps/opnimp/journal/journal_entries.h"
#include "apps/opnimp/journal/journal_file.h"
#include "apps/opnimp/journal/record_hash.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/run/journal_choice.h"
#include "platform/native/native_kept_file.h"
#include "platform/native/native_state.h"
#include "tests/support/checks.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

namespace {

constexpr std::string_view secondGood = "C002,B,R2,04/03/2008,-50.25,-20.10";

std::string documents(RunnerWorld& world) {
  return world.ask(
      "select (select count(*) from CustomerDebitNote) || '+' || (select count(*) "
      "from CustomerCreditNote)");
}

/// The journal as earlier versions wrote it: with records as they are written, and nothing behind
/// what was assumed of the file.
void writeAsEarlier(const std::string& from, const std::string& to) {
  JournalFile file(openKept(to, KeptFor::Writing), {});
  readEntries(*openKept(from, KeptFor::Reading), [&](EntryType type, std::string_view payload) {
    if (type != EntryType::RunBegun) return file.write(type, payload);
    EntryReader rest(payload);
    RunStart run = readRunStart(rest);
    const std::string bytes = rest.text();
    run.records =
        hashRecords(*findKind(run.kind), CsvRecords(bytes), run.mapping, {2008, {}, true});
    EntryWriter before;
    writeBeforeFile(before, run, bytes.size());
    const std::string_view assumed("\0", 1);
    file.writeLong(type, std::array{before.payload(), std::string_view(bytes), assumed});
  });
  file.sync();
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

}  // namespace

TEST_CASE("what an earlier run posted is refused, and --again posts it") {
  RunnerWorld world;
  CHECK(world.importLines({openingTitles, good1, unknownCustomer, secondGood}).status == 1);
  const struct {
    std::vector<std::string_view> lines;
    std::vector<std::string> more;
    int status;
    std::string_view says;
  } rows[] = {
      {{openingTitles, good1, unknownCustomer, secondGood}, {}, 2, "run 1 of 2008-04-01"},
      {{openingTitles, good1, unknownCustomer, secondGood},
       {},
       2,
       "--again everything named there"},
      {{openingTitles, good1, unknownCustomer, secondGood}, {"--dry-run"}, 2, "2 records of 3"},
      // Another file: the same record in another order of columns, written in another way.
      {{"Balance,Bill Amount,Customer ID,Date,Reference", "5,5,C001,1/3/2008,R9",
        "60,100.00,C001,3 March 2008,R1"},
       {},
       2,
       "1 record of this file was posted by an earlier run, or may have been: line 3 (run 1)"},
      {{openingTitles, "c001 ,A, r1,03/03/2008,100.00,60.00"},
       {"--accept", "all"},
       2,
       "line 2 (run 1)"},
      {{openingTitles, good3, "C004,D,R4,,5,5", "C004,D,R4,,5,5"}, {"--accept", "all"}, 1, "run 2"},
      // What was refused is not in the database.
      {{openingTitles, unknownCustomer}, {}, 1, "run 3"},
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
  CHECK(world.importLines({openingTitles, good1}, {"--again"}).status == 0);
  CHECK(documents(world) == "6+1");

  // The same file means nothing for another database, and another journal knows nothing of it.
  const std::string file = world.folder.write("in.csv", crlf({openingTitles, good1}));
  const std::string copy = world.folder.write("moved.db", world.folder.read("company.db"));
  CHECK(world.import(file, {"--database", copy}).status == 2);
  const std::string fresh = world.folder.path("fresh.db");
  CHECK(world.run({"demo-database", fresh}).status == 0);
  CHECK(world.import(file, {"--database", fresh}).status == 0);
  CHECK(world.import(file, {"--journal", world.folder.path("other")}).status == 0);
}

TEST_CASE("records are known again by what was posted of them, those of earlier versions, too") {
  RunnerWorld world;
  const std::string undated = "C001,A,R1,,100,100";
  const std::string opposite = "C002,B,R2,13/03/2008,50,-50";
  CHECK(world.importLines({openingTitles, undated, opposite}, {"--accept", "all"}).status == 1);
  const struct {
    std::string line;
    int status;   // of a dry run
    int earlier;  // the same, after a run of an earlier version
  } rows[] = {
      {"C001,A,R1,31/03/2008,100,100", 2, 0},      {"C001,A,r1,,100,100", 2, 2},
      {"C001,A,R1,30/03/2008,100,100", 0, 0},      {"C002,B,R2,13/03/2008,50,50", 2, 0},
      {"C002,B,R2,2008-03-13,50.00,-50.00", 2, 2}, {"C002,B,R2,13/03/2008,-50,-50", 0, 0},
  };
  const std::string earlier = world.folder.path("earlier");
  writeAsEarlier(world.folder.path("state/opnimp/journal"), earlier);
  for (const auto& row : rows) {
    CAPTURE(row.line);
    const std::string file = world.folder.write("in.csv", crlf({openingTitles, row.line}));
    const std::vector<std::string> options{"--dry-run", "--accept", "all"};
    CHECK((world.import(file, options).status == 2) == (row.status == 2));
    CHECK((world.import(file, {"--dry-run", "--accept", "all", "--journal", earlier}).status ==
           2) == (row.earlier == 2));
  }
  CHECK(world.run({"report", "1", "--journal", earlier}).status == 1);
}

TEST_CASE("reports, rejects and the list of runs come from the journal alone") {
  RunnerWorld world;
  const std::string rejects = world.folder.path("r.csv");
  const Ran first = world.importLines(
      {openingTitles, good1, unknownCustomer, "C002,B,,,1,5", secondGood}, {"--rejects", rejects});
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
      {{good1, unknownCustomer, secondGood}, {}, "posted rejected posted"},
      {{good1, unknownCustomer, secondGood},
       {"--all-or-nothing"},
       "taken-back rejected taken-back"},
      {{good1, secondGood}, {"--all-or-nothing"}, "posted posted"},
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

TEST_CASE("a command that cannot do what it is asked for says why and writes nothing") {
  RunnerWorld world;
  world.kind = "bank-branch";
  CHECK(world.importLines({bankTitles, "B1,B,R1,B"}).status == 0);
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
      {{"report", "1", "--journal", world.folder.path("none")}, 4, "there is no journal"},
      {{"runs", "--journal", other}, 4, "is no journal"},
      {{"runs", "--journal", world.folder.path("none")}, 4, "there is no journal"},
      {{"runs", "--journal", world.folder.path("")}, 4, "could not be read"},
#ifndef _WIN32
      {{"runs", "--journal", "/dev/null"}, 4, "no file but a pipe, a socket or a device"},
      {{"preview", "bank-branch", "/dev/zero"}, 4, "no file but a pipe, a socket or a device"},
#endif
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
}

TEST_CASE("the list of runs says of a journal that it is damaged, or not there yet") {
  RunnerWorld world;
  const Ran none = world.run({"runs"});
  CHECK(none.status == 0);
  CHECK(contains(none.out, "has no runs yet"));
  CHECK(world.importLines({openingTitles, good1}).status == 0);
  std::string bytes = world.folder.read("state/opnimp/journal");
  const std::string whole = bytes;
  bytes[20] = static_cast<char>(bytes[20] ^ 1);
  const Ran first = world.run({"runs", "--journal", world.folder.write("first", bytes)});
  CHECK(first.status == 4);
  CHECK(contains(first.out, "is damaged: no run of it can be read"));
  CHECK(contains(first.err, "it is damaged"));
  CHECK(world.run({"report", "1", "--journal", world.folder.path("first")}).status == 4);
  const Ran second =
      world.run({"runs", "--journal", world.folder.write("second", whole + bytes.substr(8))});
  CHECK(second.status == 4);
  CHECK(contains(second.out, "1 posted"));
}

TEST_CASE("a number of records that this machine's memory has no room for is damage") {
  EntryWriter entry;
  entry.number(std::uint64_t{1} << 40U);
  const bool fits = sizeof(std::size_t) == sizeof(std::uint64_t);
  CHECK(errorOf([&] { EntryReader(entry.payload()).count(); }) == (fits ? 0 : 321));
}

TEST_CASE("a journal that cannot be written lets nothing be posted") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", crlf({openingTitles, good1}));
  const std::string other = world.folder.write("other", "Customer ID\r\n");
  CHECK(world.import(file, {"--journal", other}).status == 4);
  CHECK(world.import(file, {"--journal", world.folder.path("")}).status == 4);
  CHECK(world.import(file, {"--journal", file}).status == 3);
  CHECK(world.import(file, {"--journal", world.database()}).status == 3);
  CHECK(world.import(file, {"--journal", "r", "--rejects", "r"}).status == 3);
  world.surroundings.stateFolder.clear();
  CHECK(contains(world.import(file).err, noStateFolder));
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
  const Ran ran = world.importLines({openingTitles, good1, secondGood, good3, unknownCustomer,
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
  CHECK(world.importLines({openingTitles, "C001,A,R9,,5,5", "C001,A,R9,,6,6"}, {"--accept", "all"})
            .status == 1);
  CHECK(contains(world.run({"reversal", "3", world.folder.path("two.csv")}).out,
                 "with --accept same-reference"));
}

TEST_CASE("a rejects file that somebody else has made is never replaced") {
  RunnerWorld world;
  const std::string rejects = world.folder.path("r.csv");
  for (const char* name : {"r.csv", "r.csv.reasons.csv", "r.csv.check.csv", "r.csv.rest.csv"}) {
    CAPTURE(name);
    world.folder.write(name, "mine");
    const Ran ran = world.importLines({openingTitles, unknownCustomer}, {"--rejects", rejects});
    CHECK(ran.status == 3);
    CHECK(world.folder.read(name) == "mine");
    std::filesystem::remove(world.folder.path(name));
  }
  // One that appears while the run goes on.
  world.surroundings.interrupted = [&] {
    world.folder.write("r.csv", "mine");
    return false;
  };
  const Ran ran = world.importLines({openingTitles, unknownCustomer}, {"--rejects", rejects});
  CHECK(ran.status == 5);
  CHECK(contains(ran.out, "since the run began"));
  CHECK(world.folder.read("r.csv") == "mine");
}
