// A loss of power at any moment: what was not synced is lost, as a whole or by sectors. What the
// journal and the output files say then is so, and a run that is taken up makes what one makes that
// nobody disturbed.
#include <doctest/doctest.h>

#include <algorithm>
#include <set>

#include "apps/opnimp/journal/run_index.h"
#include "apps/opnimp/run/journaled_import.h"
#include "samples/company/sample_company.h"
#include "tests/support/program.h"
#include "tests/support/recorded_disk.h"
#include "tests/support/salesmen.h"
#include "tests/support/truth.h"

namespace velk {
namespace {

using Loss = RecordedDisk::Loss;
using MakeArguments = std::vector<std::string> (*)(const TemporaryFolder&);

/// A command, its files before it, and all that it did to them.
struct Recorded {
  Recorded(const DiskFiles& files, MakeArguments command) {
    write(folder, files);
    disk = std::make_unique<RecordedDisk>(folder);
    const TemporaryFolder other;
    ran = runProgram(folder, command(folder),
                     {{"FAULT_CALLS", "none"},
                      {"FAULT_FOLDER", folder.path("")},
                      {"FAULT_RECORD", other.path("changes")},
                      {"FAULT_CLOCK", "30"}});  // a sync with every fourth record or so
    changes = RecordedDisk::readChanges(other.read("changes"));
  }

  TemporaryFolder folder;
  std::unique_ptr<RecordedDisk> disk;
  std::vector<RecordedDisk::Change> changes;
  Ran ran;
};

/// Calls check(files, isEnd) with what the disk has after every change, or some of them.
template <class Check>
void losePower(Recorded& recorded, std::size_t moments, Check check) {
  const unsigned seed = std::random_device()();
  std::mt19937 random{seed};
  MESSAGE("seed " << seed << ", " << recorded.changes.size() << " changes");
  const std::size_t step =
      triesAll() ? 1 : std::max<std::size_t>(recorded.changes.size() / moments, 1);
  const std::size_t first = random() % step;
  std::set<DiskFiles> seen;
  for (std::size_t done = 0; done <= recorded.changes.size(); ++done) {
    CAPTURE(done);
    const bool isEnd = done == recorded.changes.size();
    if (isEnd || done % step == first) {
      for (DiskFiles& files :
           std::vector{recorded.disk->after(Loss::All), recorded.disk->after(Loss::BytesNotNames),
                       recorded.disk->afterAny(random), recorded.disk->after(Loss::Nothing)}) {
        if (seen.insert(files).second) check(files, isEnd);
      }
    }
    if (!isEnd) recorded.disk->apply(recorded.changes[done]);
  }
  MESSAGE(seen.size() << " states of the disk");
}

const DiskFiles& companyFiles() {
  static const DiskFiles made = [] {
    const TemporaryFolder folder;
    createSampleCompany(folder.path("company.db"));
    return DiskFiles{{"company.db", folder.read("company.db")}};
  }();
  return made;
}

constexpr int firstRecords = 8;
constexpr int skippedRecords = recordsBetweenSyncs + 10;
constexpr int lastRecords = 4;

std::string inputText() {
  std::string text = std::string(openingTitles) + "\r\n";
  int number = 0;
  const auto add = [&](const std::string& code, const std::string& amount) {
    text +=
        code + ",N,R" + std::to_string(++number) + ",03/03/2008," + amount + "," + amount + "\r\n";
  };
  const auto addSome = [&](int count) {
    for (int i = 0; i < count; ++i) {
      const std::string known = (number % 20 < 9 ? "C00" : "C0") + std::to_string(number % 20 + 1);
      add(number % 5 == 3 ? "C999" : known, std::to_string(100 + number));
    }
  };
  addSome(firstRecords);
  for (int i = 0; i < skippedRecords; ++i) add("C001", "0");
  addSome(lastRecords);
  return text;
}

std::vector<std::string> importInto(const std::string& file, const std::string& folder,
                                    const std::string& rejects) {
  return {"import",
          "customer-opening",
          file,
          "--accept",
          "all",
          "--app-folder",
          folder,
          "--database",
          folder + "company.db",
          "--rejects",
          folder + rejects};
}

std::vector<std::string> importAll(const TemporaryFolder& folder) {
  auto args = importInto(folder.path("in.csv"), folder.path(""), "r.csv");
  args.insert(args.end(), {"--report", folder.path("page.html"), "--metrics",
                           folder.path("metrics.prom"), "--json"});
  return args;
}

/// With what undoes a change in a file of its own, which is emptied when the change is one.
std::vector<std::string> importUndoable(const TemporaryFolder& folder) {
  auto args = importAll(folder);
  const std::string database = folder.path("company.db");
  std::ranges::replace(args, database, "Driver=SQLite3;JournalMode=TRUNCATE;Database=" + database);
  return args;
}

/// What stands in the database for each reference, "" being all references.
Texts facts(const RunnerWorld& world) {
  const auto connection = openOdbc(embeddedConnectionString(world.folder.path("company.db")));
  Texts found;
  for (const auto rows = connection->Execute(
           "select DocReference || ' ' || CustomerID || ' ' || Amount from CustomerDebitNote union "
           "all select 'all ' || CustomerID || ' ' || OpeningBalance from CustomerOpeningBalance "
           "where OpeningBalance <> 0");
       !rows->isEOF(); rows->MoveNext()) {
    found.push_back(toText(rows->field(0)));
  }
  std::ranges::sort(found);
  return found;
}

struct Intended {
  explicit Intended(Recorded& run) {
    const auto report = nlohmann::json::parse(run.ran.out);
    for (const auto& record : report.at("records")) outcomes.push_back(record.at("outcome"));
    for (const char* name : {"r.csv", "r.csv.reasons.csv", "page.html", "metrics.prom"}) {
      REQUIRE(run.folder.has(name));
      outputs[name] = run.folder.read(name);
    }
    log = linesOf(run.folder.read("Error.log"));
    RunnerWorld world;
    world.folder.write("company.db", run.folder.read("company.db"));
    made = facts(world);
  }

  Texts outcomes;
  DiskFiles outputs;
  Texts log;
  Texts made;
};

void checkOutputs(const RunnerWorld& world, const Intended& intended, bool isEnd) {
  for (const auto& output : intended.outputs) {
    CAPTURE(output.first);
    const std::string found = world.folder.read(output.first);
    CHECK((found.empty() || found == output.second));
    if (isEnd) CHECK(found == output.second);
  }
}

/// The report of the run says of no record what the database and the log do not have.
void checkReport(RunnerWorld& world, const Intended& intended, bool isEnd) {
  const int status = world.run({"report", "1"}).status;
  CHECK((status == 1 || (status == 5 && !isEnd)));
  std::ostringstream out;
  Streams streams{out, out, false};
  Events events(streams, false);
  JournaledImport run(openJournal(world.folder.path("state/opnimp/journal"), KeptFor::Reading,
                                  world.surroundings, events),
                      1);
  CHECK(run.result().account.addsUp());
  const Texts made = facts(world);
  const Texts log = linesOf(world.folder.read("Error.log"));
  int undone = 0;
  const auto& records = run.result().traces.records;
  for (std::size_t i = 0; i < records.size(); ++i) {
    const Outcome outcome = records[i].outcome;
    const std::string reference = "R" + std::to_string(i + 1) + " ";
    const auto documents = std::ranges::count_if(
        made, [&](const std::string& fact) { return fact.starts_with(reference); });
    CAPTURE(i);
    const std::string code(outcomeCode(outcome));
    if (outcome != Outcome::Unknown) CHECK(documents == (outcome == Outcome::Posted ? 1 : 0));
    if (isEnd || (outcome != Outcome::Unknown && outcome != Outcome::NotReached))
      CHECK(code == intended.outcomes.at(i));
    if (outcome == Outcome::Unknown && !records[i].calls.empty()) ++undone;
    for (const RecordedLine* line : records[i].lines) {
      if (line->kept == RecordedLine::Kept::InFile)
        CHECK(std::ranges::count(log, line->text + "\r") > 0);
    }
  }
  CHECK(undone <= 5);  // those since the last sync
}

/// The references of the records that are named as in doubt, each with a blank behind it.
Texts namedAsDoubtful(const RunnerWorld& world) {
  Texts references;
  for (const std::string& line : linesOf(world.folder.read("again.csv.check.csv"))) {
    const std::size_t at = line.find(",N,R");
    if (at != std::string::npos)
      references.push_back(line.substr(at + 3, line.find(',', at + 3) - at - 3) + " ");
  }
  return references;
}

Texts leaving(Texts made, const Texts& references) {
  std::erase_if(made, [&](const std::string& fact) {
    return std::ranges::any_of(
        references, [&](const std::string& reference) { return fact.starts_with(reference); });
  });
  std::erase_if(made, [&](const std::string& fact) {
    return !references.empty() && fact.starts_with("all ");
  });
  return made;
}

/// Nothing twice, and only what is named is missing.
void checkSequel(RunnerWorld& world, const Intended& intended) {
  const std::string file = world.folder.write("in.csv", inputText());
  auto args = importInto(file, world.folder.path(""), "again.csv");
  args.emplace_back("--resume");
  Ran resumed = world.run(args);
  if (contains(resumed.err, "the journal has no run of")) {
    args.pop_back();
    resumed = world.run(args);
  }
  if (contains(resumed.err, "reached all records"))
    world.run({"rejects", "1", world.folder.path("again.csv")});
  CAPTURE(resumed.err);
  CHECK((resumed.status == 1 || resumed.status == 3));
  const Texts references = namedAsDoubtful(world);
  CAPTURE(references.size());
  CHECK(references.size() <= firstRecords + skippedRecords);
  CHECK(leaving(facts(world), references) == leaving(intended.made, references));
}

void checkImport(const DiskFiles& files, const Intended& intended, bool isEnd) {
  RunnerWorld world;
  world.surroundings.machineStart = "later";
  write(world.folder, files);
  checkOutputs(world, intended, isEnd);
  const Ran runs = world.run({"runs", "--json"});
  CAPTURE(runs.out);
  CAPTURE(runs.err);
  REQUIRE(runs.status == 0);
  if (!nlohmann::json::parse(runs.out).at("runs").empty()) checkReport(world, intended, isEnd);
  checkSequel(world, intended);
}

}  // namespace

TEST_CASE("power: an import says what the disk has, and is taken up") {
  const std::pair<const char*, MakeArguments> ways[] = {{"WAL", importAll},
                                                        {"DELETE", importUndoable}};
  if (OPNIMP_SANITIZED && !triesAll())
    return;  // half a minute, and nothing else runs than natively
  const std::size_t chosen = std::random_device()() % std::size(ways);
  for (std::size_t i = 0; i < std::size(ways); ++i) {
    if (!triesAll() && i != chosen) continue;
    const std::string way = ways[i].first;
    MESSAGE(way);
    const TemporaryFolder folder;
    write(folder, companyFiles());
    openOdbc(embeddedConnectionString(folder.path("company.db")))
        ->Execute("PRAGMA journal_mode = " + way);
    Recorded recorded({{"company.db", folder.read("company.db")}, {"in.csv", inputText()}},
                      ways[i].second);
    REQUIRE_MESSAGE(recorded.ran.status == 1, recorded.ran.err);
    const Intended intended(recorded);
    losePower(recorded, 5,
              [&](const DiskFiles& left, bool isEnd) { checkImport(left, intended, isEnd); });
  }
}

TEST_CASE("power: what the other commands have made is there, and whole or not at all") {
  const std::tuple<std::string, std::string, MakeArguments> rows[] = {
      {"new.db", "Made",
       [](const TemporaryFolder& folder) {
         return Texts{"demo-database", folder.path("new.db")};
       }},
      {"salesmen.xls", "Wrote 8 salesmen", exportCommand}};
  for (const auto& row : rows) {
    const std::string& name = std::get<0>(row);
    CAPTURE(name);
    Recorded recorded(companyFiles(), std::get<2>(row));
    REQUIRE(contains(recorded.ran.out, std::get<1>(row)));
    const std::string whole = recorded.folder.read(name);
    losePower(recorded, 40, [&](const DiskFiles& left, bool isEnd) {
      const auto found = left.find(name);
      if (isEnd) CHECK(found != left.end());
      if (found != left.end()) CHECK((found->second == whole || (found->second.empty() && !isEnd)));
    });
  }
}

}  // namespace velk
