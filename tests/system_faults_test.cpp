// Each call on each file that a command touches fails in turn, as full disks, quotas, rights and
// broken devices make it, and each that asks for memory.
#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "apps/opnimp/cli/failures.h"
#include "platform/native/descriptor.h"
#include "samples/company/sample_company.h"
#include "tests/support/program.h"
#include "tests/support/salesmen.h"
#include "tests/support/truth.h"

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
  args.insert(args.end(), {"--report", folder.path("page.html"), "--metrics",
                           folder.path("call.prom"), "--log-format", "json"});
  return args;
}

void prepareBroken(const TemporaryFolder& folder) {
  std::string text = crlf({openingTitles});
  for (const std::string_view record : brokenRecords) text += crlf({record});
  folder.write("in.csv", text);
}

Truth truthOf(const TemporaryFolder& folder) {
  return Truth(folder, {std::begin(brokenRecords), std::end(brokenRecords)});
}

/// Each line of the events is a document, and the metrics are whole or said to be missing.
void checkMonitoring(const TemporaryFolder& folder, const Ran& ran) {
  for (const std::string& line : linesOf(ran.err)) CHECK(nlohmann::json::accept(line));
  if (folder.has("call.prom")) {
    CHECK(folder.read("call.prom").ends_with("# EOF\n"));
  } else {
    CHECK(contains(ran.err, "the metrics "));
  }
}

void checkReport(const TemporaryFolder& folder, const Ran& ran) {
  checkMonitoring(folder, ran);
  const Json report(ran.out);
  truthOf(folder).check(report);
  const bool paged = report.at("report") != "null";
  CHECK(folder.has("page.html") == paged);
  if (paged) CHECK(folder.read("page.html").ends_with("</html>\n"));
  CHECK(paged == (report.at("reportError") == "null"));
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
  truthOf(folder).checkNothingTwice();
  // The last good record is posted, or set apart.
  CHECK((truthOf(folder).changes(4) == 2 ||
         contains(folder.read("again.csv.check.csv"), brokenRecords[4])));
  // Lines that were torn do not spoil those behind them.
  auto log = linesOf(folder.read("Error.log"));
  for (const std::string& line : log) CHECK(line.ends_with("\r"));
}

/// Whether the account was drawn up, and could be written.
bool hasReport(const Ran& ran) {
  return ran.out.starts_with("{\"command\"") && !contains(ran.err, memoryRanOut);
}

void checkBroken(const TemporaryFolder& folder, const Ran& ran) {
  CHECK(ran.status != 0);
  if (hasReport(ran)) {
    checkReport(folder, ran);
  } else if (!contains(ran.err, memoryRanOut) && ran.status > 0) {  // it ended before it began
    CHECK(!ran.err.empty());
    CHECK(folder.read("ledger").empty());
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

void checkExport(const TemporaryFolder& folder, const Ran& ran) {
  CHECK(contains(ran.out, "Wrote 8 salesmen") == (ran.status == 0));
  const std::string bytes = folder.read("salesmen.xls");
  CHECK((bytes.empty() || bytes.starts_with("\xD0\xCF\x11\xE0")));
  if (ran.status == 0) CHECK(bytes.size() > 4096);
}

const Story stories[] = {
    {"import", "ledger", prepareBroken, commandBroken, checkBroken},
    {"export", ".db", prepareExport, exportCommand, checkExport},
    {"demo-database", "no such name", [](const TemporaryFolder&) {}, commandDemo, checkDemo},
};

struct Undisturbed {
  std::vector<std::string> calls;  // on files, each as "call path"
  int status;
  std::set<std::string> names;
};

Ran runWith(const Story& story, const TemporaryFolder& folder, SystemFaults settings) {
  settings.insert({{"FAULT_CALLS", "files"},
                   {"FAULT_TRACE", folder.path("trace")},
                   {"FAULT_FOLDER", folder.path("")},
                   {"FAULT_BUT", story.but},
                   {"FAULT_LETTERS", "...rt"}});
  story.prepare(folder);
  Ran ran = runProgram(folder, story.command(folder), settings);
  CAPTURE(ran.out);
  CAPTURE(ran.err);
  const std::string trace = folder.read("trace");
  const std::string crash = trace.substr(std::min(trace.find("crash "), trace.size()));
  CAPTURE(crash);
  // What a library does to itself is not the program's, nor what the loader does before it.
  const bool ofOthers =
      ran.status < 0 && (!contains(crash, "crash opnimp") || contains(crash, " getpwuid"));
  const bool isOfMemory = settings["FAULT_CALLS"] == "malloc" || settings.contains("FAULT_MEMORY");
  CHECK((ran.status >= 0 || (ofOthers && isOfMemory)));
  CHECK(ran.status <= 5);
  for (const std::string& name : namesIn(folder)) {
    CAPTURE(name);
    CHECK_FALSE((name.starts_with("~") || contains(name, ".new-")));
  }
  return ran;
}

Undisturbed undisturbed(const Story& story) {
  const TemporaryFolder folder;
  const Ran ran = runWith(story, folder, {});
  Undisturbed run{linesOf(folder.read("trace")), ran.status, namesIn(folder)};
  run.calls.pop_back();  // their number
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

TEST_CASE("system faults: whatever fails, nothing is claimed that is not so") {
  for (const Story& story : stories) {
    CAPTURE(story.name);
    const Undisturbed usual = undisturbed(story);
    REQUIRE(usual.calls.size() > 10);
    const std::size_t step = triesAll() ? 1 : OPNIMP_SANITIZED ? 71 : 7;
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

TEST_CASE("system faults: without memory there is a message, and nothing is lost") {
  if (OPNIMP_SANITIZED) return;  // they have an allocator of their own
  const Story& story = stories[0];
  for (const std::string calls : {"new", "malloc"}) {
    CAPTURE(calls);
    std::size_t count = 0;
    {
      const TemporaryFolder folder;
      const Ran ran = runWith(story, folder, {{"FAULT_CALLS", calls}});
      const std::string trace = folder.read("trace");
      count = std::stoul(trace.substr(trace.rfind(' ')));
    }
    REQUIRE(count > 1000);
    for (std::size_t at = 1; at <= count; at += triesAll() ? 1 : count / 30) {
      CAPTURE(at);
      for (const std::string how : {"once", "ever"}) {
        CAPTURE(how);
        const TemporaryFolder folder;
        const Ran ran =
            runWith(story, folder,
                    {{"FAULT_CALLS", calls}, {"FAULT_AT", std::to_string(at)}, {"FAULT_HOW", how}});
        CAPTURE(ran.out);
        CAPTURE(ran.err);
        CHECK((ran.status < 0 || !ran.err.empty() || hasReport(ran)));
        story.check(folder, ran);
      }
    }
  }
}

TEST_CASE("system faults: a small limit of memory") {
  if (OPNIMP_SANITIZED) return;  // their memory is beyond any limit
  const Story& story = stories[0];
  for (int more = 0; more < 100; more += triesAll() ? 1 : 6) {
    CAPTURE(more);
    const TemporaryFolder folder;
    const Ran ran =
        runWith(story, folder, {{"FAULT_CALLS", "none"}, {"FAULT_MEMORY", std::to_string(more)}});
    CAPTURE(ran.out);
    CAPTURE(ran.err);
    story.check(folder, ran);
  }
}

TEST_CASE("system faults: an import goes by the file as it was when it was read") {
  using Change = void (*)(const std::string&);
  const std::pair<std::string, Change> fates[] = {
      {"cut", [](const std::string& path) { fs::resize_file(path, fs::file_size(path) / 2); }},
      {"deleted", [](const std::string& path) { fs::remove(path); }},
      {"replaced", [](const std::string& path) { std::ofstream(path) << "C003,C\r\nC004,D\r\n"; }}};
  const std::pair<std::string, std::string> files[] = {
      {"in.csv", crlf({openingTitles, good1, good2})},
      {"in.xls", workbook({salesmanTitles, "One|||||Retail|", "Two|||||Retail|"})}};
  for (const auto& change : fates) {
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

namespace {

/// Runs the program where a folder is mounted to be read only, with the world's own state.
Ran runMountedReadOnly(const RunnerWorld& world, const std::string& folder, const Texts& args) {
  const std::string mount =
      "mount --bind '" + folder + "' '" + folder + "' && mount -o remount,bind,ro '" + folder + "'";
  std::string command = "XDG_STATE_HOME='" + world.surroundings.stateFolder +
                        "' unshare -rm sh -c \"" + mount + " && exec";
  for (const std::string& arg : args) command += " '" + arg + "'";
  command += " >'" + world.folder.path("out") + "' 2>'" + world.folder.path("err") + "'\" 2>&1";
  const int status = std::system(command.c_str());
  return {WEXITSTATUS(status), world.folder.read("out"), world.folder.read("err")};
}

/// Of a folder that lets nothing be written: `run` gets each command.
template <class Run>
void checkLocked(RunnerWorld& world, const std::string& locked, std::string_view why, Run run) {
  const std::pair<const char*, int> rows[] = {
      {"--journal", 4}, {"--rejects", 4}, {"--report", 4}, {"--metrics", 4}, {"--app-folder", 1}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    const std::string named = locked + (row.second == 1 ? "" : "/x");
    std::vector<std::string> args{"import",     world.kind,       world.folder.path("in.csv"),
                                  "--database", world.database(), row.first,
                                  named};
    if (row.second != 1) args.insert(args.end(), {"--app-folder", world.folder.path(".")});
    const Ran ran = run(args);
    CAPTURE(ran.err);
    CHECK(ran.status == row.second);
    if (row.second == 1)
      CHECK(contains(ran.out, "could not take 1 line (" + std::string(why) + ")"));
    if (row.second == 4) CHECK(contains(ran.err, named + " "));
    CHECK(debits(world) == (row.second == 1 ? "1" : "0"));
  }
}

}  // namespace

TEST_CASE("system faults: folders that let nothing be written") {
  RunnerWorld worlds[2];
  for (RunnerWorld& world : worlds) {
    world.folder.write("in.csv", crlf({openingTitles, good1, unknownCustomer}));
    fs::create_directory(world.folder.path("locked"));
    world.database();
  }
  RunnerWorld& mounted = worlds[1];
  const std::string locked = mounted.folder.path("locked");
  if (runMountedReadOnly(mounted, locked, {"true"}).status == 0) {
    checkLocked(mounted, locked, "Path/File access error", [&](Texts args) {
      args.insert(args.begin(), OPNIMP_PROGRAM);
      return runMountedReadOnly(mounted, locked, args);
    });
  } else {
    MESSAGE("NO FOLDER CAN BE MOUNTED HERE: read-only mounts are not tested");
  }
  RunnerWorld& world = worlds[0];
  fs::permissions(world.folder.path("locked"),
                  fs::perms::owner_read | fs::perms::others_read | fs::perms::others_exec);
  for (const std::string& open : {world.folder.path(""), world.database()}) {
    fs::permissions(open, fs::perms::all);
  }
  const uid_t user = geteuid();
  if (user == 0 && seteuid(65534) != 0) return;  // nobody
  checkLocked(world, world.folder.path("locked"), "Permission denied",
              [&](const Texts& args) { return world.run(args); });
  if (user == 0) REQUIRE(seteuid(0) == 0);
  for (const RunnerWorld& each : worlds) CHECK(fs::is_empty(each.folder.path("locked")));
}

// Nobody has to ask for such a lock before writing, and an editor or a copying program that holds
// one must cost no line.
TEST_CASE("system faults: a log that another program has locked takes every line") {
  RunnerWorld world;
  const std::string log = world.folder.write("Error.log", "before\r\n");
  const Descriptor held = openDescriptor(log, O_RDWR);
  struct flock whole {};
  whole.l_type = F_WRLCK;
  REQUIRE(::fcntl(held.get(), F_OFD_SETLK, &whole) == 0);
  REQUIRE(::flock(held.get(), LOCK_EX) == 0);
  const Ran ran = world.importLines({openingTitles, good1, unknownCustomer}, {"--json"});
  CHECK(Json(ran.out).at("records[1].log[0].kept") == "file");
  CHECK(linesOf(world.folder.read("Error.log")).size() == 2);
}

}  // namespace velk
