// Whole imports by command line: against the sample company, and against a connection that fails.
#include <doctest/doctest.h>

#include <fstream>
#include <sstream>

#include "platform/native/native_privacy.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

namespace {

std::string posted(RunnerWorld& world) {
  return world.ask("select count(*) from CustomerDebitNote") + "+" +
         world.ask("select count(*) from CustomerCreditNote") + "+" +
         world.ask("select count(*) from CustomerOpeningBalance");
}

}  // namespace

TEST_CASE("each sample file ends as its description says") {
  const std::string samples = OPNIMP_SOURCE_DIR "/samples/";
  std::ifstream readme(samples + "README.md");
  std::size_t tried = 0;
  std::string kind;
  for (std::string line; std::getline(readme, line);) {
    if (line.starts_with("## ")) kind = line.substr(3);
    const std::size_t name = line.find(" | ", 2);
    if (!line.starts_with("| ") || (!contains(line, ".csv |") && !contains(line, ".xls |")))
      continue;
    CAPTURE(line);
    std::vector<std::string> more;
    if (contains(line, "; * |")) {
      more = {"--map", "Customer ID=Party Code", "--map", "Bill Amount=#2",   "--map=Balance=BAL",
              "--map", "Date=Bill Date",         "--map", "Reference=Bill No"};
    }
    RunnerWorld world;
    world.kind = kind;
    const std::string file = samples + line.substr(2, name - 2);
    // "2, 1": refused, and 1 with what is harmful accepted.
    const char accepted = line[line.size() - 3];
    const bool refused = line[line.size() - 5] == ',';
    more.emplace_back("--raw");
    const Ran ran = world.import(file, more);
    CHECK_MESSAGE(ran.status == line[line.size() - (refused ? 6 : 3)] - '0', ran.out);
    more.insert(more.end(), {"--accept", "all"});
    RunnerWorld second;
    second.kind = kind;
    CHECK(second.import(file, more).status == accepted - '0');
    ++tried;
  }
  CHECK(tried >= 35);
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
  const std::string rest = world.folder.write("r.csv.rest.csv", crlf({openingTitles, good1}));
  const std::string notDatabase = world.folder.write("text.db", "no database at all, only text");
  const std::string empty = world.folder.write("empty.db", "");
  const std::string missing = world.folder.path("missing");
  const std::string odbc = "Driver=NoSuchDriver;UID=me;PWD=hunter2";
  const std::string kind = "customer-opening";
  const struct {
    std::vector<std::string> args;
    int status;
    std::string_view says;
  } rows[] = {
      {{}, 3, "a command is needed; `opnimp --help`"},
      {{"imprt", kind, in}, 3, "there is no command \"imprt\""},
      {{"preview", kind, odbc}, 4, "PWD=***"},
      {{"import"}, 3, "KIND is required"},
      {{"import", "--nix"}, 3, "not expected: --nix"},
      {{"import", kind}, 3, "FILE is required"},
      {{"import", "no-such-kind", in}, 3, "customer-opening"},
      {{"demo-database", in, "more"}, 3, "not expected: more"},
      {{"import", kind, in, "--database"}, 3, "missing"},
      {{"import", kind, in, "--rejects=", "--dry-run"}, 3, "needs a value"},
      {{"import", kind, in, "--encoding", ""}, 3, "must not be empty"},
      {{"import", kind, in, "--wait", "0"}, 3, "--wait"},
      {{"import", kind, in, "--wait", "soon"}, 3, "--wait"},
      {{"import", kind, in, "--database", ""}, 3, "empty"},
      {{"import", kind, in, "--database", "a", "--database", "b"}, 3, "has no further host"},
      {{"import", "--map", "Balance", kind, in}, 3, "--map takes"},
      {{"import", kind, in, "--rejects", in}, 3, "write over the file"},
      {{"import", kind, rest, "--rejects", world.folder.path("r.csv")}, 3, "write over the file"},
      {{"import", kind, in, "--database", notDatabase, "--rejects", notDatabase},
       3,
       "write over the database"},
      {{"import", kind, in, "--database", "any.db", "--rejects", "any.db-wal"},
       3,
       "write over the database"},
      {{"import", kind, in, "--app-folder", world.folder.path(""), "--rejects",
        world.folder.path("Error.log")},
       3,
       "write over the error log"},
      {{"import", kind, in, "--rejects", world.folder.path("r.csv")}, 3, "move it first"},
      {{"import", kind, in + ".rest.csv", "--rejects", in}, 4, "could not be read"},
      {{"import", kind, missing}, 4, "File not found"},
      {{"import", kind, world.folder.path("")}, 4, "it is a folder"},
      {{"import", kind, in, "--database", missing}, 4, "demo-database"},
      {{"import", kind, in, "--database", world.folder.path("")}, 4, "opened: it is a folder"},
      {{"runs", "--journal", world.folder.path("")}, 4, "read: it is a folder"},
      {{"import", kind, in, "--database", notDatabase}, 4, "could not be opened"},
      {{"import", kind, in, "--database", empty}, 4, "is none of this application: no such table"},
      {{"export", "customers", "x.xls"}, 3, "there is: salesman"},
      {{"import", kind, in, "--database", odbc}, 4, "PWD=***"},
      {{"import", kind, in, "--app-folder", missing}, 4, "--app-folder"},
      {{"import", kind, in, "--rejects", missing + "/r.csv"}, 4, "--rejects"},
      {{"demo-database", in}, 4, "Choose another path"},
      {{"preview", kind, in, "--dry-run"}, 3, "not expected: --dry-run"},
  };
  world.surroundings.database = world.folder.path("any.db");
  for (const auto& row : rows) {
    CAPTURE(row.says);
    const Ran ran = world.run(row.args);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
    CHECK_FALSE(contains(ran.err, "hunter2"));
    CHECK(ran.out.empty());
  }
  CHECK(world.folder.read("in.csv") == crlf({openingTitles, good1}));
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
      {crlf({"", std::string(openingTitles), std::string(good1)}), {"--raw"}, "first line"},
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
  const std::string rejects = world.folder.path("r.csv");
  const Ran ran = world.importLines({openingTitles, good1, unknownCustomer, "C002,B,,,1,5"},
                                    {"--dry-run", "--json", "--rejects", rejects});
  CHECK(ran.status == 1);
  const Json report(ran.out);
  CHECK(report.outcomes() == "posted rejected posted-with-warning");
  CHECK(report.at("run") == "null");
  CHECK_FALSE(world.folder.has("state"));
  CHECK(report.at("records[0].calls[1].result") == "not-run");
  CHECK(report.at("records[1].log[0].kept") == "memory");
  CHECK(posted(world) == "0+0+0");
  CHECK_FALSE(world.folder.has("Error.log"));
  CHECK(world.folder.read("r.csv") == crlf({openingTitles, unknownCustomer}));
}

TEST_CASE("a vendors' run that breaks off says what is posted and leaves the rest to import") {
  RunnerWorld world;
  world.kind = "vendor-opening";
  const std::string_view titles = "Vendor ID,Date,Bill Amount,Balance";
  const std::string rejects = world.folder.path("r.csv");
  const Ran ran = world.importLines(
      {titles, "V01,,10,5", "V02,31/02/2008,1,1e999", "V03,,-7,-7"},
      {"--json", "--rejects", rejects, "--accept", "date-unreadable,amount-too-large"});
  CHECK(ran.status == 5);
  CHECK(contains(ran.err,
                 "The import stopped at record 2: Type mismatch: Invalid Date(31/02/2008) for "
                 "Vendor - V02. Records before it are"));
  const Json report(ran.out);
  CHECK(report.outcomes() == "posted rejected not-reached");
  CHECK(report.at("account.addsUp") == "true");
  CHECK(report.at("account.unreadable") == "1");
  CHECK(report.at("warnings[0].code") == "date-unreadable");
  CHECK(world.folder.read("r.csv") == crlf({titles, "V02,31/02/2008,1,1e999"}));

  const Ran rest = world.import(rejects + ".rest.csv");
  CHECK(rest.status == 0);
  CHECK(rest.err == "Import Successfull\n");
  CHECK(world.ask("select sum(Amount) from VendorDebitNote") == "10");
  CHECK(world.ask("select sum(OpeningBalance) from VendorOpeningBalance") == "-2");
}

TEST_CASE("records of master data that the database refuses are lost on the screen, not here") {
  RunnerWorld world;
  world.kind = "bank-branch";
  const std::string_view known = "BSH,Sahyadri,BSH001,Shivajinagar";
  const std::string rejects = world.folder.path("r.csv");
  const Ran banks = world.importLines({bankTitles, "O'B,\" O'B \",O1,Main", known, ",X,,"}, {});
  CHECK(banks.status == 2);
  CHECK(banks.err == "Bank Code is Mandatory.Its not been Mapped\n");
  CHECK(contains(banks.out, "Bank Code is empty in line 4 (record 3)"));
  const Ran again = world.importLines({bankTitles, "O'B,\" O'B \",O1,Main", known},
                                      {"--json", "--rejects", rejects});
  CHECK(again.status == 1);
  CHECK(again.err == "Import Successfull\n");
  const Json report(again.out);
  CHECK(report.outcomes() == "posted partial");
  CHECK(report.at("account.addsUp") == "true");
  CHECK(report.at("account.banks.count") == "2");
  CHECK(report.at("account.branches.count") == "1");
  CHECK(world.folder.read("r.csv.check.csv") == crlf({bankTitles, known}));
  CHECK(world.ask("select BankName from BankMaster where BankCode='O''B'") == "O'B");

  world.kind = "vendor";
  const Ran vendors = world.importLines(
      {"Pan Number,Vendor Code,Vendor Name,Address,Phone,Contact Person,Locality,Sale Type,TNGST,"
       "CST",
       ",N1,New,,,,,,,", ",V01,Old,,5,,,,,"},
      {"--accept", "first-value-empty"});
  CHECK(vendors.status == 1);
  CHECK(contains(vendors.out, "Vendors posted       1\n  Accounts posted      1\n"));
  CHECK(contains(vendors.out, "record 2) failed: sp_insert_Vendors failed"));
  CHECK(contains(vendors.out, "first-value-empty (1, line 3, in "));
  CHECK(contains(vendors.out, "The account adds up."));
  CHECK(world.ask("select AccountName from VendorAccount where VendorID='N1'") == "New");
}

TEST_CASE("what becomes of records when calls fail") {
  const struct {
    std::string kind;
    std::string_view titles;
    std::vector<std::string_view> records;  // from 1 on
  } customers{"customer-opening", openingTitles, {"", good1, good2, good3}},
      banks{"bank-branch", bankTitles, {"", "1,2,3,4", "5,6,7,8", ""}},
      vendors{"vendor", vendorTitles, {"", "1,2,,,,,,,,", "5,6,,,,,,,,", ""}};
  const struct {
    decltype(customers)& file;
    // Customers: 1 colours, 2 and 3 first date, then look-up, note, entry a record; the others:
    // 1 colours, then two calls a record, or one for a refused vendor.
    std::string_view fates;
    std::string_view outcomes;
    int status;
    std::size_t doubtful;  // the record in the check file; 0: none
  } rows[] = {
      {customers, ".......xx", "posted failed posted", 1, 0},
      {customers, "......x", "posted rejected posted", 1, 0},
      {customers, "......t", "posted not-reached not-reached", 5, 0},
      {customers, "......m", "posted not-reached not-reached", 5, 0},
      {customers, ".......m", "posted unknown not-reached", 5, 2},
      {customers, "X", "not-reached not-reached not-reached", 5, 0},
      {customers, "..........L", "posted posted unknown", 5, 3},
      {customers, "....xX", "unknown not-reached not-reached", 5, 1},
      {customers, "..x", "not-reached not-reached not-reached", 5, 0},
      {banks, ".x", "partial posted", 1, 1},
      {banks, ".xx..", "failed posted", 1, 0},
      {banks, "...l", "posted partial", 1, 2},
      {banks, "..X", "unknown not-reached", 5, 1},
      {vendors, ".x", "failed posted", 1, 0},
      {vendors, ".d", "unknown posted", 1, 1},
      {vendors, ".l", "partial posted", 1, 1},
      {vendors, "....x", "posted partial", 1, 2},
      {vendors, ".xX", "failed unknown", 5, 2},
      {vendors, ".m", "unknown not-reached", 5, 1},
  };
  for (const auto& row : rows) {
    CAPTURE(row.file.kind);
    CAPTURE(row.fates);
    RunnerWorld world;
    world.kind = row.file.kind;
    world.script(row.fates);
    const auto& records = row.file.records;
    const Ran ran = world.importLines(
        {row.file.titles, records[1], records[2], records[3]},
        {"--json", "--database", "DSN=any", "--rejects", world.folder.path("r.csv")});
    const Json report(ran.out);
    CHECK(report.outcomes() == row.outcomes);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(report.at("account.addsUp") == "true", ran.out);
    const std::string_view doubtful = records[row.doubtful];
    const std::string check = world.folder.read("r.csv.check.csv");
    CHECK(check == (doubtful.empty() ? "" : crlf({row.file.titles, doubtful})));
    CHECK((doubtful.empty() || !contains(world.folder.read("r.csv"), doubtful)));
  }
}

TEST_CASE("the JSON report carries calls, errors with all diagnostics, and messages") {
  RunnerWorld world;
  world.script("...d");
  const Ran ran = world.importLines({openingTitles, "C001,\x80\"\"\\\x01,R,03/03/2008,100,60"},
                                    {"--json", "--database", "DSN=any;PWD=hunter2"});
  const Json report(ran.out);
  CHECK(report.at("database") == "DSN=any;PWD=***");
  CHECK(report.at("records[0].line") == "2");
  CHECK(report.at("records[0].calls[1].procedure") == "sp_insert_CustDebitNote");
  CHECK(report.at("records[0].calls[1].parameters[2]") == "2008-03-03 00:00:00");
  CHECK(report.at("records[0].calls[1].error.diagnostics[1].message") == "second");
  CHECK(report.at("records[0].calls[2].parameters[1]") == "60");
  CHECK(report.at("records[0].log[0].kept") == "file");
  world.kind = "bank-branch";
  const Ran banks = world.importLines({bankTitles, "1,2,3,4"}, {"--json", "--database", "DSN=any"});
  CHECK(banks.err == "Import Successfull\n");
  CHECK(Json(banks.out).at("messages[0].prompt") == "Import Successfull");
}

TEST_CASE("a report that nobody can read is not silent about what was posted") {
  for (const bool dryRun : {false, true}) {
    RunnerWorld world;
    const std::string in = world.folder.write("in.csv", crlf({openingTitles, good1}));
    std::vector<std::string> args{
        "import",       "customer-opening",   in, "--database", world.database(),
        "--app-folder", world.folder.path("")};
    if (dryRun) args.emplace_back("--dry-run");
    std::ostringstream err;
    std::ostream out(nullptr);
    Streams streams{out, err, false};
    CHECK(runOpnimp(args, streams, world.surroundings) == 5);
    CHECK(contains(err.str(), "the import ran") == !dryRun);
    CHECK(posted(world) == (dryRun ? "0+0+0" : "1+0+1"));
  }
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

TEST_CASE("no database is ever chosen or made without a word") {
  RunnerWorld world;
  const std::string in = world.folder.write("in.csv", crlf({openingTitles, good1}));
  const std::string secret =
      world.folder.write("secret", embeddedConnectionString(world.database()) + "\n");
  const std::string text = world.folder.write("text", "no connection string");
  const std::string open = world.folder.write("for all", "DSN=a;PWD=hunter2");
  for (const std::string& path : {secret, text}) makePrivate(path);
  const struct {
    std::string environment;
    int status;
    std::string_view says;
  } rows[] = {
      {"", 3, "OPNIMP_DATABASE"},
      {open, 4, isWindows ? "all\" /inheritance:r /grant:r" : "all'` makes it yours only"},
      {text, 4, "no connection string"},
      {world.folder.path("none.db"), 4, "demo-database"},
      {"Driver=NoSuchDriver;PWD=hunter2", 4, "PWD=***"},
      {secret, 0, ""},
      {world.database(), 0, ""},
  };
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(world.folder.path(""));
  for (const auto& row : rows) {
    CAPTURE(row.environment);
    world.surroundings.database = row.environment;
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"import", "customer-opening", in, "--dry-run"},
          {"export", "salesman", world.folder.path("out.xls")}}) {
      const Ran ran = world.run(command);
      CHECK(ran.status == row.status);
      CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
      CHECK_FALSE(contains(ran.out + ran.err, "hunter2"));
    }
  }
  std::filesystem::current_path(before);
  CHECK_FALSE(world.folder.has("opnimp.db"));
}

TEST_CASE("records that all meet one failure of the database need no correction") {
  RunnerWorld world;
  REQUIRE(world.importLines({openingTitles}).status == 0);
  world.ask("drop table Customer");
  const Ran ran = world.importLines({openingTitles, good1, good2});
  CHECK(ran.status == 1);
  CHECK(contains(ran.out, "refused all that it was asked for one reason (no such table: Customer"));
}
