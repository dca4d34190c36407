// Whole imports by command line: against the sample company, and against a connection that fails.
#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <new>
#include <set>
#include <sstream>

#include "tests/support/json_value.h"
#include "tests/support/runner.h"
#include "tests/support/scripted_connection.h"

using namespace velk;

namespace {

constexpr std::string_view good1 = "C001,A,R1,03/03/2008,100.00,60.00";
constexpr std::string_view good2 = "C002,B,R2,04/03/2008,-50.00,20.00";
constexpr std::string_view good3 = "C003,C,R3,,10.00,10.00";
constexpr std::string_view unknownCustomer = "C999,X,R4,03/03/2008,1.00,1.00";

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

std::string posted(RunnerWorld& world) {
  return world.ask("select count(*) from CustomerDebitNote") + "+" +
         world.ask("select count(*) from CustomerCreditNote") + "+" +
         world.ask("select count(*) from CustomerOpeningBalance");
}

/// The outcomes of all records, blanks between.
std::string outcomes(const Json& report) {
  std::string text;
  for (std::size_t i = 0; i < report["records"].size(); ++i) {
    text += (i == 0 ? "" : " ") + report["records"][i]["outcome"].text();
  }
  return text;
}

}  // namespace

TEST_CASE("each sample file ends as its description says") {
  std::ifstream readme(samplePath("README.md"));
  std::size_t tried = 0;
  for (std::string line; std::getline(readme, line);) {
    const std::size_t name = line.find(".csv |");
    if (!line.starts_with("| ") || name == std::string::npos) continue;
    const std::string file = line.substr(2, name + 2);
    const int status = line[line.size() - 3] - '0';
    RunnerWorld world;
    std::vector<std::string> more;
    if (contains(line, "; * |")) {
      more = {"--map", "Customer ID=Party Code", "--map", "Bill Amount=#2", "--map=Balance=BAL",
              "--map", "Date=Bill Date"};
    }
    CAPTURE(file);
    const Ran ran = world.import(samplePath(file), more);
    CHECK_MESSAGE(ran.status == status, ran.out);
    ++tried;
  }
  CHECK(tried >= 18);
}

TEST_CASE("what is posted is what the file says") {
  RunnerWorld world;
  const Ran ran = world.importLines({openingTitles, good1, good2, good3});
  CHECK(ran.status == 0);
  CHECK(ran.err.empty());
  CHECK(posted(world) == "2+1+3");
  CHECK(world.ask("select sum(Amount) from CustomerDebitNote") == "110");
  CHECK(world.ask("select DocumentDate from CustomerDebitNote where CustomerID='C003'") ==
        "2008-03-31");
  CHECK(world.ask("select OpeningBalance from CustomerOpeningBalance where CustomerID='C002'") ==
        "-20");
  CHECK(contains(ran.out, "In the file         3      110.00        50.00          70.00"));
  CHECK(contains(ran.out, "The account adds up."));
  CHECK_FALSE(world.folder.has("Error.log"));
}

TEST_CASE("the command line and what it opens decide the exit status") {
  RunnerWorld world;
  const std::string in = world.folder.write("in.csv", crlf({openingTitles, good1}));
  const std::string notDatabase = world.folder.write("text.db", "no database at all, only text");
  const std::string missing = world.folder.path("missing");
  const std::string odbc = "Driver=NoSuchDriver;UID=me;PWD=hunter2";
  const struct {
    std::vector<std::string> args;
    int status;
    std::string_view says;
  } rows[] = {
      {{}, 3, "--help"},
      {{"import"}, 3, "a kind and a file"},
      {{"import", "no-such-kind", in}, 3, "customer-opening"},
      {{"import", "customer-opening", in, "more"}, 3, "a kind and a file"},
      {{"import", "customer-opening", in, "--database"}, 3, "needs a value"},
      {{"import", "customer-opening", in, "--database="}, 3, "empty"},
      {{"import", "customer-opening", in, "--rejects", in}, 3, "write over the file"},
      {{"import", "customer-opening", in, "--database", notDatabase, "--rejects", notDatabase},
       3,
       "write over the database"},
      {{"import", "customer-opening", in + ".rest.csv", "--rejects", in}, 4, "could not be read"},
      {{"import", "customer-opening", missing}, 4, "File not found"},
      {{"import", "customer-opening", world.folder.path("")}, 4, "Path/File access error"},
      {{"import", "customer-opening", in, "--database", missing}, 4, "demo-database"},
      {{"import", "customer-opening", in, "--database", notDatabase}, 4, "could not be opened"},
      {{"import", "customer-opening", in, "--database", odbc}, 4, "PWD=***"},
      {{"import", "customer-opening", in, "--app-folder", missing}, 4, "--app-folder"},
      {{"import", "customer-opening", in, "--rejects", missing + "/r.csv"}, 4, "--rejects"},
      {{"demo-database", in}, 4, "Choose another path"},
      {{"preview", "customer-opening", in, "--dry-run"}, 3, "means nothing to preview"},
  };
  for (const auto& row : rows) {
    std::string line;
    for (const std::string& arg : row.args) line += arg + " ";
    CAPTURE(line);
    const Ran ran = world.run(row.args);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
    CHECK_FALSE(contains(ran.err, "hunter2"));
    CHECK(ran.out.empty());
  }
  CHECK(world.folder.read("in.csv") == crlf({openingTitles, good1}));
  CHECK_FALSE(world.folder.has("in.csv.opnimp-new"));
}

TEST_CASE("a file to import that is named like a companion of the rejects is not written over") {
  RunnerWorld world;
  const std::string rest = world.folder.write("r.csv.rest.csv", crlf({openingTitles, good1}));
  CHECK(world.import(rest, {"--rejects", world.folder.path("r.csv")}).status == 3);
  CHECK(world.folder.read("r.csv.rest.csv") == crlf({openingTitles, good1}));
}

TEST_CASE("a file or mapping that does not do is refused and nothing is posted") {
  const struct {
    std::string bytes;
    std::vector<std::string> more;
    std::string_view says;
  } rows[] = {
      {crlf({"Customer ID,Date,Bill Amount", "C001,,1"}), {}, "mapped to Balance"},
      {crlf({openingTitles, good1, "C002,B,R,,5,"}), {}, "Balance is empty in line 3 (record 2)"},
      {crlf({"", std::string(openingTitles), std::string(good1)}), {}, "first line"},
      {"\r\n", {}, "first line"},
      {"", {}, "empty"},
      {crlf({openingTitles, good1}), {"--map", "Balance=Nope"}, "no column \"Nope\""},
      {crlf({openingTitles, good1}), {"--map", "Nope=Date"}, "no field \"Nope\""},
      {crlf({openingTitles, good1}), {"--map", "Balance=#7"}, "no column #7"},
      {crlf({"A,A", "1,2"}), {"--map", "Balance=a"}, "2 columns"},
      {crlf({openingTitles, "C001,A,,,1,1"}), {"--map", "Balance=Date"}, "contains Null Value"},
  };
  for (const auto& row : rows) {
    RunnerWorld world;
    CAPTURE(row.says);
    const Ran ran = world.import(world.folder.write("in.csv", row.bytes), row.more);
    CHECK(ran.status == 2);
    CHECK_MESSAGE(contains(ran.out, row.says), ran.out);
    CHECK(posted(world) == "0+0+0");
  }
}

TEST_CASE("the most records that can be imported in one go") {
  for (const std::size_t count : {32767U, 32768U}) {
    RunnerWorld world;
    std::string bytes = crlf({openingTitles});
    for (std::size_t i = 0; i < count; ++i) bytes += "C001,A,R,,1,1\r\n";
    const Ran ran = world.import(world.folder.write("in.csv", bytes));
    CHECK(ran.status == 2);
    CHECK(contains(ran.out, "at most 32,766 can be imported in one go; split the file"));
    CHECK(posted(world) == "0+0+0");
  }
}

TEST_CASE("refused records are written byte for byte and can be imported again") {
  RunnerWorld world;
  const std::string_view quoted = "C998,\"Caf\xE9, \"\"x\"\"\", ,03/03/2008,\"1,000.50\",1";
  const Ran ran = world.importLines({openingTitles, good1, unknownCustomer, "", quoted},
                                    {"--rejects", world.folder.path("r.csv")});
  CHECK(ran.status == 1);
  CHECK(world.folder.read("r.csv") == crlf({openingTitles, unknownCustomer, quoted}));
  CHECK(world.folder.read("r.csv.reasons.csv") ==
        crlf({"Record,Line,Outcome,Reason",
              "2,3,rejected,\"Customer does not exist for code - C999\"",
              "3,5,rejected,\"Customer does not exist for code - C998\""}));
  CHECK_FALSE(world.folder.has("r.csv.check.csv"));
  CHECK_FALSE(world.folder.has("r.csv.rest.csv"));
  CHECK(posted(world) == "1+0+1");

  std::string corrected = world.folder.read("r.csv");
  corrected.replace(corrected.find("C999"), 4, "C004");
  corrected.replace(corrected.find("C998"), 4, "C005");
  CHECK(world.import(world.folder.write("again.csv", corrected)).status == 0);
  CHECK(posted(world) == "3+0+3");
}

TEST_CASE("a dry run checks everything and changes nothing") {
  RunnerWorld world;
  const Ran ran =
      world.importLines({openingTitles, good1, unknownCustomer, good2}, {"--dry-run", "--json"});
  CHECK(ran.status == 1);
  const Json report = JsonReader::read(ran.out);
  CHECK(outcomes(report) == "posted rejected posted");
  CHECK(report["records"][0]["calls"][1]["result"].text() == "not-run");
  CHECK(report["records"][1]["log"][0]["kept"].text() == "memory");
  CHECK(posted(world) == "0+0+0");
  CHECK_FALSE(world.folder.has("Error.log"));
}

TEST_CASE("a dry run leaves the doubtful records of a real run alone") {
  RunnerWorld world;
  world.folder.write("r.csv.check.csv", "kept");
  const std::string rejects = world.folder.path("r.csv");
  world.importLines({openingTitles, good1}, {"--dry-run", "--rejects", rejects});
  CHECK(world.folder.read("r.csv.check.csv") == "kept");
  world.importLines({openingTitles, good1}, {"--rejects", rejects});
  CHECK_FALSE(world.folder.has("r.csv.check.csv"));
}

TEST_CASE("an interrupted run ends before a record, and the rest can be imported") {
  for (const std::size_t at : {1U, 2U, 3U}) {
    CAPTURE(at);
    RunnerWorld world;
    std::size_t asked = 0;
    world.machine.interrupted = [&] { return ++asked >= at; };
    const std::string rejects = world.folder.path("r.csv");
    const Ran ran = world.importLines({openingTitles, good1, good2, good3}, {"--rejects", rejects});
    CHECK(ran.status == 5);
    CHECK(contains(ran.out, "The run broke off: it was interrupted"));
    CHECK(contains(ran.out, "The account adds up."));
    const std::size_t done = at - 1;
    CHECK(world.ask("select count(*) from CustomerOpeningBalance") == std::to_string(done));

    world.machine.interrupted = nullptr;
    CHECK(world.import(world.folder.path("r.csv.rest.csv")).status == 0);
    CHECK(posted(world) == "2+1+3");
  }
}

TEST_CASE("an amount beyond the range of numbers stops the import at its record") {
  RunnerWorld world;
  const Ran ran = world.importLines({openingTitles, good1, "C002,B,R,,1e999,1", good3},
                                    {"--json", "--rejects", world.folder.path("r.csv")});
  CHECK(ran.status == 5);
  const Json report = JsonReader::read(ran.out);
  CHECK(outcomes(report) == "posted rejected not-reached");
  CHECK(report["account"]["addsUp"].flag());
  CHECK(report["account"]["unreadable"].number() == 1);
  CHECK(contains(ran.err, "The import stopped at record 2: Overflow."));
  CHECK(world.folder.read("r.csv.rest.csv") == crlf({openingTitles, good3}));
}

TEST_CASE("what becomes of records when calls fail") {
  using Row = struct {
    std::string_view what;
    std::set<std::size_t> failing;  // 1 colours, 2 first date, then look-up, note, entry a record
    std::size_t lostAt;
    std::size_t lateAt;
    std::string_view outcomes;
    int status;
    std::string_view check;  // records in the check file
  };
  const Row rows[] = {
      {"nothing fails", {}, 0, 0, "posted posted posted", 0, ""},
      {"a note", {4}, 0, 0, "partial posted posted", 1, "1"},
      {"an account entry", {8}, 0, 0, "posted partial posted", 1, "2"},
      {"both", {7, 8}, 0, 0, "posted failed posted", 1, ""},
      {"a look-up", {6}, 0, 0, "posted rejected posted", 1, ""},
      {"a later statement of a note", {}, 0, 7, "posted partial posted", 1, "2"},
      {"a later statement of an entry", {}, 0, 8, "posted partial posted", 1, "2"},
      {"lost with the colours", {}, 1, 0, "not-reached not-reached not-reached", 5, ""},
      {"lost with the first date", {}, 2, 0, "not-reached not-reached not-reached", 5, ""},
      {"lost in a look-up", {}, 6, 0, "posted not-reached not-reached", 5, ""},
      {"lost in a note", {}, 7, 0, "posted unknown not-reached", 5, "2"},
      {"lost in an entry", {}, 8, 0, "posted unknown not-reached", 5, "2"},
      {"lost in a late statement", {}, 10, 10, "posted posted unknown", 5, "3"},
      {"lost after a failed note", {4}, 5, 0, "unknown not-reached not-reached", 5, "1"},
      {"no first date", {2}, 0, 0, "not-reached not-reached not-reached", 5, ""},
  };
  const std::string_view records[] = {good1, good2, good3};
  for (const Row& row : rows) {
    CAPTURE(row.what);
    RunnerWorld world;
    const auto connection = std::make_shared<ScriptedConnection>();
    connection->lateFailure = row.lateAt;
    connection->onCall = [&](std::size_t call, std::string_view) {
      connection->lost = call == row.lostAt;
      const bool failsAtOnce = connection->lost && call != row.lateAt;
      if (failsAtOnce || row.failing.contains(call)) {
        throw RuntimeError(ErrorNumber::IntegrityViolation, "refused");
      }
    };
    world.machine.openDatabase = [&](const std::string&) {
      return OpenDatabase{connection, [] {}, [] {}};
    };
    const Ran ran = world.importLines(
        {openingTitles, good1, good2, good3},
        {"--json", "--database", "DSN=any", "--rejects", world.folder.path("r.csv")});
    const Json report = JsonReader::read(ran.out);
    CHECK(outcomes(report) == row.outcomes);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(report["account"]["addsUp"].flag(), ran.out);
    std::string check;
    if (!row.check.empty()) {
      check = crlf({openingTitles, records[static_cast<std::size_t>(row.check[0] - '1')]});
    }
    CHECK(world.folder.read("r.csv.check.csv") == check);
    CHECK_FALSE(contains(world.folder.read("r.csv"), good1.substr(0, row.check == "1" ? 4 : 99)));
  }
}

TEST_CASE("an error that is no error of the database leaves a record unknown, not failed") {
  RunnerWorld world;
  const auto connection = std::make_shared<ScriptedConnection>();
  connection->onCall = [](std::size_t call, std::string_view) {
    if (call == 7) throw std::bad_alloc();
  };
  world.machine.openDatabase = [&](const std::string&) {
    return OpenDatabase{connection, [] {}, [] {}};
  };
  const Ran ran =
      world.importLines({openingTitles, good1, good2, good3}, {"--json", "--database", "DSN=any"});
  CHECK(ran.status == 5);
  CHECK(outcomes(JsonReader::read(ran.out)) == "posted unknown not-reached");
}

TEST_CASE("the JSON report carries calls, errors with all diagnostics, and messages") {
  RunnerWorld world;
  const auto connection = std::make_shared<ScriptedConnection>();
  connection->onCall = [](std::size_t call, std::string_view) {
    if (call == 4) throw RuntimeError(ErrorNumber::ProviderTimeout);
  };
  world.machine.openDatabase = [&](const std::string&) {
    return OpenDatabase{connection, [] {}, [] {}};
  };
  const Ran ran = world.importLines({openingTitles, "C001,\x80\"\"\\\x01,R,03/03/2008,100,60"},
                                    {"--json", "--database", "DSN=any;PWD=hunter2"});
  CHECK(ran.err == "Database is busy, cannot establish connection\n");
  const Json report = JsonReader::read(ran.out);
  CHECK(report["database"].text() == "DSN=any;PWD=***");
  const Json& record = report["records"][0];
  CHECK(record["line"].number() == 2);
  CHECK(record["calls"][1]["procedure"].text() == "sp_insert_CustDebitNote");
  CHECK(record["calls"][1]["parameters"][2].text() == "2008-03-03 00:00:00");
  CHECK(record["calls"][1]["error"]["diagnostics"][1]["message"].text() == "second");
  CHECK(record["calls"][2]["parameters"][1].number() == 60);
  CHECK(record["messages"][0]["style"].number() == 16);
  CHECK(record["log"][0]["kept"].text() == "file");
}

TEST_CASE("a log that cannot be written loses nothing") {
  RunnerWorld world;
  std::filesystem::create_directory(world.folder.path("Error.log"));
  const Ran ran = world.importLines({openingTitles, unknownCustomer, good1});
  CHECK(ran.status == 1);
  CHECK(contains(ran.out,
                 "The error log could not take 1 line (Path/File access error):\n"
                 "  Customer does not exist for code - C999\n"));
  CHECK(posted(world) == "1+0+1");
}

TEST_CASE("nothing in a file or a name steers the terminal") {
  RunnerWorld world;
  const Ran ran = world.importLines({openingTitles, "C\x1B[2J\x9B\x07,A,R,,1,1"});
  const Ran preview = world.run({"preview", "customer-opening", world.folder.path("in.csv")});
  const Ran missing = world.run({"preview", "customer-opening", "no\x1B[2J\r.csv"});
  CHECK(contains(ran.out, "C\\x1B[2J"));
  CHECK(contains(preview.out, "C\\x1B[2J"));
  CHECK(contains(missing.err, "no\\x1B[2J"));
  for (const std::string& text : {ran.out, ran.err, preview.out, missing.err}) {
    CHECK(text.find_first_of("\x1B\x07\r") == std::string::npos);
    CHECK_FALSE(contains(text, "\xC2\x9B"));
  }
}

TEST_CASE("a progress line is drawn on a terminal only, and removed") {
  RunnerWorld world;
  world.terminal = true;
  const Ran ran = world.importLines({openingTitles, good1, good2});
  CHECK(ran.err == "\r1 of 2 records\r" + std::string(14, ' ') + "\r");
}

TEST_CASE("the default database is made on first use, with the sample company") {
  const TemporaryFolder folder;
  const auto before = std::filesystem::current_path();
  RunnerWorld world;
  const std::string in = world.folder.write("in.csv", crlf({openingTitles, good1}));
  std::filesystem::current_path(folder.path(""));
  const Ran first = world.run({"import", "customer-opening", in});
  const Ran second = world.run({"import", "customer-opening", in});
  std::filesystem::current_path(before);
  CHECK(first.status == 0);
  CHECK(first.err == "Made opnimp.db with the sample company.\n");
  CHECK(second.status == 0);
  CHECK(second.err.empty());
}

TEST_CASE("a database without the company's tables breaks the run off with nothing posted") {
  RunnerWorld world;
  const std::string empty = world.folder.write("empty.db", "");
  const Ran ran = world.importLines({openingTitles, good1}, {"--database", empty});
  CHECK(ran.status == 5);
  CHECK(contains(ran.err, "no such table: Setup"));
  CHECK(contains(ran.out, "Nothing was imported."));
}
