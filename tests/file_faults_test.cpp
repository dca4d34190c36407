// Each call on each file that a command touches fails in turn, as full disks, quotas, rights and
// broken devices make it.
#include <doctest/doctest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "samples/company/sample_company.h"
#include "tests/support/checks.h"
#include "tests/support/json_value.h"
#include "tests/support/program.h"
#include "tests/support/salesmen.h"

namespace velk {
namespace {

namespace fs = std::filesystem;

struct Fault {
  std::string how;
  int error;
  bool isHarmless() const { return error == EINTR || how == "short"; }
};
const Fault faults[] = {{"once", ENOSPC}, {"ever", ENOSPC}, {"torn", ENOSPC}, {"short", 0},
                        {"once", EINTR},  {"once", EIO},    {"ever", EIO},    {"once", EDQUOT},
                        {"ever", EDQUOT}, {"torn", EDQUOT}, {"once", EACCES}, {"ever", EACCES}};

Texts linesOf(const std::string& text) {
  Texts lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The names of all files but those that programs keep for themselves.
std::set<std::string> namesIn(const TemporaryFolder& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder.path(""))) {
    names.insert(entry.path().filename().string());
  }
  for (const char* own : {"out", "err", "trace", "state"}) names.erase(own);
  return names;
}

/// A command that is run again and again, each time in a folder that is made anew.
struct Story {
  std::string name;
  const char* but;  // what of the files does not fail
  void (*prepare)(const TemporaryFolder& folder);
  std::vector<std::string> (*command)(const TemporaryFolder& folder);
  void (*check)(const TemporaryFolder& folder, const Ran& ran);
};

constexpr std::string_view refusedRecord = "C002,B,R2,never,1.00,1.00";
constexpr std::string_view brokenRecords[] = {good1,
                                              refusedRecord,
                                              "C003,C,R3,,10.00,10.00",
                                              "C004,D,R4,,7.00,7.00",
                                              "C005,E,R5,,8.00,8.00",
                                              "C006,F,R6,never,9.00,9.00"};

std::vector<std::string> importBroken(const TemporaryFolder& folder, const std::string& rejects) {
  return {"import",
          "customer-opening",
          folder.path("in.csv"),
          "--json",
          "--accept",
          "all",
          "--app-folder",
          folder.path("."),
          "--journal",
          folder.path("journal"),
          "--rejects",
          folder.path(rejects),
          "--database",
          std::string("Driver=" OPNIMP_FAULTS ";Ledger=") + folder.path("ledger") + ";State=42000"};
}

/// One posted, refused, posted in part, in doubt and not reached: all files have something to say.
std::vector<std::string> commandBroken(const TemporaryFolder& folder) {
  std::vector<std::string> args = importBroken(folder, "r.csv");
  args.insert(args.end(), {"--report", folder.path("page.html")});
  return args;
}

void prepareBroken(const TemporaryFolder& folder) {
  std::string text = crlf({openingTitles});
  for (const std::string_view record : brokenRecords) text += crlf({record});
  folder.write("in.csv", text);
  folder.write("Error.log", "earlier\r\n");
}

std::string codeOf(std::size_t record) {
  return std::string(brokenRecords[record].substr(0, 4));
}

std::size_t changesOf(const TemporaryFolder& folder, std::size_t record) {
  const auto lines = linesOf(folder.read("ledger"));
  return static_cast<std::size_t>(std::ranges::count_if(
      lines, [&](const std::string& line) { return contains(line, codeOf(record)); }));
}

/// The report's word on a record and its log lines, held against ledger and files.
void checkRecord(const TemporaryFolder& folder, const Json& report, std::size_t record) {
  const std::string at = "records[" + std::to_string(record) + "].";
  const std::string outcome = report.at(at + "outcome");
  CAPTURE(outcome);
  const std::size_t changes = changesOf(folder, record);
  if (outcome == "posted") CHECK(changes == 2);
  if (outcome == "failed" || outcome == "rejected" || outcome == "not-reached") CHECK(changes == 0);
  const auto isIn = [&](const char* name) {
    return contains(folder.read(name), std::string(brokenRecords[record]) + "\r\n");
  };
  const auto written = [&](const char* name) { return contains(report.at("rejectFiles"), name); };
  const bool refused = outcome == "failed" || outcome == "rejected";
  const bool doubtful = outcome == "partial" || outcome == "unknown";
  if (written("r.csv\"")) CHECK(isIn("r.csv") == refused);
  if (written("check.csv")) CHECK(isIn("r.csv.check.csv") == doubtful);
  if (written("rest.csv")) CHECK(isIn("r.csv.rest.csv") == (outcome == "not-reached"));
  const nlohmann::json log = nlohmann::json::parse(report.at(at + "log"));
  for (const auto& line : log) {
    if (line.at("kept") != "file") continue;
    const auto lines = linesOf(folder.read("Error.log"));
    CHECK(std::ranges::count(lines, line.at("text").get<std::string>() + "\r") == 1);
  }
}

void checkReport(const TemporaryFolder& folder, const Ran& ran) {
  const Json report(ran.out);
  // What is called written is there, and the other way round.
  for (const char* name : {"r.csv", "r.csv.reasons.csv", "r.csv.check.csv", "r.csv.rest.csv"}) {
    CAPTURE(name);
    const bool said = contains(report.at("rejectFiles"), folder.path(name) + "\"");
    CHECK(folder.has(name) == said);
  }
  const bool paged = report.at("report") != "null";
  CHECK(folder.has("page.html") == paged);
  if (paged) CHECK(folder.read("page.html").ends_with("</html>\n"));
  CHECK(paged == (report.at("reportError") == "null"));
  if (report.at("account") == "null") return;
  CHECK(report.at("account.addsUp") == "true");
  for (std::size_t record = 0; record < std::size(brokenRecords); ++record) {
    CAPTURE(record);
    checkRecord(folder, report, record);
  }
}

/// Nothing twice, and nothing forgotten, when all is well again.
void checkSequel(const TemporaryFolder& folder) {
  auto again = importBroken(folder, "again.csv");
  again.emplace_back("--resume");
  Ran sequel = runProgram(folder, again);
  if (contains(sequel.err, "the journal has no run of")) {
    again.pop_back();
    sequel = runProgram(folder, again);
  }
  CHECK_MESSAGE((sequel.status <= 1 || sequel.status == 3), (sequel.err + sequel.out));
  Texts changes = linesOf(folder.read("ledger"));
  std::ranges::sort(changes);
  CAPTURE(changes);
  CHECK(std::ranges::adjacent_find(changes) == changes.end());
  CHECK(changesOf(folder, 4) == 2);
  // Lines that were torn do not spoil those behind them.
  auto log = linesOf(folder.read("Error.log"));
  for (const std::string& line : log) CHECK(line.ends_with("\r"));
}

void checkBroken(const TemporaryFolder& folder, const Ran& ran) {
  CHECK(ran.status >= 1);
  if (ran.out.starts_with("{\"status\"")) {  // it ended before it began
    CHECK(!ran.err.empty());
    CHECK(folder.read("ledger").empty());
  } else {
    checkReport(folder, ran);
  }
  checkSequel(folder);
}

std::vector<std::string> commandDemo(const TemporaryFolder& folder) {
  return {"demo-database", folder.path("new.db")};
}

void checkDemo(const TemporaryFolder& folder, const Ran& ran) {
  CHECK(folder.has("new.db") == (ran.status == 0));
  CHECK(contains(ran.out, "Made") == (ran.status == 0));
  if (ran.status != 0) return;
  const auto made = openOdbc(embeddedConnectionString(folder.path("new.db")));
  CHECK(ask(*made, "pragma integrity_check") == "ok");
  CHECK(ask(*made, "select count(*) > 5 from StoredProcedure") == "1");
}

void prepareExport(const TemporaryFolder& folder) {
  static const std::string company = [] {
    const TemporaryFolder made;
    createSampleCompany(made.path("c.db"));
    return made.read("c.db");
  }();
  folder.write("company.db", company);
  folder.write("salesmen.xls", "");
}

std::vector<std::string> commandExport(const TemporaryFolder& folder) {
  return {"export",
          "salesman",
          folder.path("salesmen.xls"),
          "--database",
          folder.path("company.db"),
          "--app-folder",
          folder.path(".")};
}

void checkExport(const TemporaryFolder& folder, const Ran& ran) {
  CHECK(contains(ran.out, "Wrote 8 salesmen") == (ran.status == 0));
  const std::string bytes = folder.read("salesmen.xls");
  CHECK((bytes.empty() || bytes.starts_with("\xD0\xCF\x11\xE0")));
  if (ran.status == 0) CHECK(bytes.size() > 4096);
}

const Story stories[] = {
    {"import", "ledger", prepareBroken, commandBroken, checkBroken},
    {"export", ".db", prepareExport, commandExport, checkExport},
    {"demo-database", "no such name", [](const TemporaryFolder&) {}, commandDemo, checkDemo},
};

struct Undisturbed {
  std::vector<std::string> calls;  // on files, each as "call path"
  int status;
  std::set<std::string> names;
};

Ran runWith(const Story& story, const TemporaryFolder& folder, SystemFaults settings) {
  settings.insert({{"FAULT_CALLS", "files"},
                   {"FAULT_FOLDER", folder.path("")},
                   {"FAULT_BUT", story.but},
                   {"FAULT_LETTERS", "...rt"}});
  story.prepare(folder);
  Ran ran = runProgram(folder, story.command(folder), settings);
  CAPTURE(ran.out);
  CAPTURE(ran.err);
  CHECK(ran.status >= 0);
  CHECK(ran.status <= 5);
  for (const std::string& name : namesIn(folder)) {
    CHECK_FALSE((name.starts_with("~") || contains(name, ".new-")));
  }
  return ran;
}

Undisturbed undisturbed(const Story& story) {
  const TemporaryFolder folder;
  const Ran ran = runWith(story, folder, {{"FAULT_TRACE", folder.path("trace")}});
  Undisturbed run{linesOf(folder.read("trace")), ran.status, namesIn(folder)};
  for (std::string& call : run.calls) call.erase(call.find(' ') + 1, folder.path("").size());
  story.check(folder, ran);
  return run;
}

void runDisturbed(const Story& story, std::size_t at, const Fault& fault,
                  const Undisturbed& usual) {
  const TemporaryFolder folder;
  const Ran ran = runWith(story, folder,
                          {{"FAULT_AT", std::to_string(at)},
                           {"FAULT_HOW", fault.how},
                           {"FAULT_ERROR", std::to_string(fault.error)}});
  CAPTURE(ran.out);
  CAPTURE(ran.err);
  // One file that fails does not keep the others from being written.
  if (fault.how == "once" && ran.status == usual.status &&
      !contains(usual.calls[at - 1], "journal")) {
    CHECK(namesIn(folder).size() + 1 >= usual.names.size());
  }
  // The engine gives up at a signal, and says so.
  if (fault.isHarmless() && story.command != commandDemo) {
    CHECK(ran.status == usual.status);
    CHECK(namesIn(folder) == usual.names);
  }
  story.check(folder, ran);
}

}  // namespace

TEST_CASE("file faults: whatever fails, nothing is claimed that is not so") {
  for (const Story& story : stories) {
    CAPTURE(story.name);
    const Undisturbed usual = undisturbed(story);
    REQUIRE(usual.calls.size() > 10);
    const std::size_t step = triesAll() ? 1 : 7;
    for (std::size_t i = 0; i < usual.calls.size() * std::size(faults); i += step) {
      const std::size_t call = i / std::size(faults);
      const Fault& fault = faults[i % std::size(faults)];
      CAPTURE(usual.calls[call]);
      CAPTURE(fault.how);
      CAPTURE(fault.error);
      runDisturbed(story, call + 1, fault, usual);
    }
  }
}

TEST_CASE("file faults: an import goes by the file as it was when it was read") {
  using Change = void (*)(const std::string&);
  const std::pair<std::string, Change> changes[] = {
      {"cut", [](const std::string& path) { fs::resize_file(path, fs::file_size(path) / 2); }},
      {"deleted", [](const std::string& path) { fs::remove(path); }},
      {"replaced", [](const std::string& path) { std::ofstream(path) << "C003,C\r\nC004,D\r\n"; }}};
  const std::pair<std::string, std::string> files[] = {
      {"in.csv", crlf({openingTitles, good1, good2})},
      {"in.xls", workbook({salesmanTitles, "One|||||Retail|", "Two|||||Retail|"})}};
  for (const auto& change : changes) {
    CAPTURE(change.first);
    for (const auto& input : files) {
      CAPTURE(input.first);
      // The clock is looked at before View, and between View and Import.
      for (int moment = 1; moment <= 4; ++moment) {
        CAPTURE(moment);
        RunnerWorld world;
        if (input.first == "in.xls") world.kind = "salesman";
        const std::string file = world.folder.write(input.first, input.second);
        world.surroundings.clock = [&, left = moment, clock = world.surroundings.clock]() mutable {
          if (--left == 0) change.second(file);
          return clock();
        };
        const Ran ran = world.import(file, {"--json"});
        CHECK_MESSAGE(Json(ran.out).outcomes() == "posted posted", ran.out);
        CHECK(ran.status == 0);
      }
    }
  }
}

TEST_CASE("file faults: folders that let nothing be written") {
  RunnerWorld world;
  const std::string file =
      world.folder.write("in.csv", crlf({openingTitles, good1, unknownCustomer}));
  const std::string locked = world.folder.path("locked");
  fs::create_directory(locked);
  fs::permissions(locked, fs::perms::owner_read | fs::perms::others_read | fs::perms::others_exec);
  for (const std::string& open : {world.folder.path(""), world.database()}) {
    fs::permissions(open, fs::perms::all);
  }
  const uid_t user = geteuid();
  if (user == 0 && seteuid(65534) != 0) return;  // nobody
  const std::pair<const char*, int> rows[] = {
      {"--journal", 4}, {"--rejects", 4}, {"--report", 4}, {"--app-folder", 1}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    const std::string named = locked + (row.second == 1 ? "" : "/x");
    std::vector<std::string> args{"import", world.kind, file, "--database", world.database()};
    args.insert(args.end(), {row.first, named});
    if (row.second != 1) args.insert(args.end(), {"--app-folder", world.folder.path(".")});
    const Ran ran = world.run(args);
    CAPTURE(ran.err);
    CHECK(ran.status == row.second);
    if (row.second == 1) CHECK(contains(ran.out, "could not take 1 line (Permission denied)"));
    if (row.second == 4) CHECK(contains(ran.err, named + " "));
    CHECK(debits(world) == (row.second == 1 ? "1" : "0"));
  }
  if (user == 0) REQUIRE(seteuid(0) == 0);
  CHECK(fs::is_empty(locked));
}

}  // namespace velk
