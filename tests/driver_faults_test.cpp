// Each call of the database's driver fails in turn, before it was done and after it, once and for
// ever, in each way that servers fail.
#include <doctest/doctest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tests/support/program.h"
#include "tests/support/salesmen.h"
#include "tests/support/truth.h"

namespace velk {
namespace {

struct Input {
  const char* kind;
  std::string titles;
  Texts records;  // of distinct keys, the second one refused where the kind knows how
};

const Input inputs[] = {
    {"customer-opening",
     std::string(openingTitles),
     {std::string(good1), "C002,B,R2,never,1,1", std::string(good3)}},
    {"vendor-opening",
     "Vendor ID,Vendor Name,Reference,Date,Bill Amount,Balance",
     {"V01,A,R1,03/03/2008,5,5", "V02,B,R2,03/03/2008,6,6"}},
    {"bank-branch", std::string(bankTitles), {"K1,Bank,K1,Branch", "K2,Bank,K2,Branch"}},
    {"vendor",
     std::string(vendorTitles),
     {"W1,W1,,,,Local,First Sales,,,", "W2,W2,,,,Local,First Sales,,,"}},
    {"salesman", salesmanTitles, {"One|||||Retail|", "Two|||||Retail|"}}};

struct Story {
  const char* kind;
  std::vector<std::string> options;
  const char* before;  // how the procedures of an earlier run failed that is resumed
};

const Story stories[] = {{"customer-opening", {}, nullptr},
                         {"vendor-opening", {}, nullptr},
                         {"bank-branch", {}, nullptr},
                         {"vendor", {}, nullptr},
                         {"salesman", {}, nullptr},
                         {"salesman", {"export"}, nullptr},
                         {"customer-opening", {"--dry-run"}, nullptr},
                         {"customer-opening", {"--all-or-nothing"}, nullptr},
                         {"customer-opening", {"--resume"}, "t"}};

const std::string kinds[] = {"lost", "time-out", "deadlock", "refused", "permission", "memory"};
constexpr std::size_t casesOfCall = std::size(kinds) * 2 * 2;

/// In the place of a setting of the process, which the driver reads when it connects.
class Setting {
 public:
  Setting(const char* name, const std::string& value) : name_(name) {
    ::setenv(name, value.c_str(), 1);
  }
  ~Setting() { ::unsetenv(name_); }
  Setting(const Setting&) = delete;
  Setting& operator=(const Setting&) = delete;

 private:
  const char* name_;
};

struct DriverWorld : RunnerWorld {
  explicit DriverWorld(const Story& story) : DriverWorld(inputOf(story.kind)) {}
  explicit DriverWorld(const Input& input)
      : isWorkbook(input.titles == salesmanTitles),
        file(isWorkbook ? writeWorkbook(input) : writeText(input)),
        truth(folder, input.records, rejects()) {
    kind = input.kind;
  }

  bool isWorkbook;
  std::string file;
  Truth truth;

  std::string rejects() const { return isWorkbook ? "r.xls" : "r.csv"; }
  std::string connection() const {
    return "Driver=" OPNIMP_FAULTS ";PWD=hunter2;State=42000;Ledger=" + folder.path("ledger") +
           ";Calls=" + folder.path("calls");
  }
  Ran importTo(const std::string& rejectsTo, const std::string& of,
               std::vector<std::string> more = {}) {
    more.insert(more.end(), {"--json", "--accept", "all", "--rejects", folder.path(rejectsTo),
                             "--database", connection()});
    return withoutSecret(import(of, std::move(more)));
  }
  Ran exportNow() {
    return withoutSecret(run({"export", "salesman", folder.path("out.xls"), "--app-folder",
                              folder.path("."), "--database", connection()}));
  }

 private:
  Ran withoutSecret(Ran ran) const {
    CHECK_FALSE(contains(ran.out + ran.err + folder.read("Error.log"), "hunter2"));
    return ran;
  }
  static const Input& inputOf(const std::string& kind) {
    return *std::ranges::find_if(inputs, [&](const Input& input) { return input.kind == kind; });
  }
  std::string writeText(const Input& input) const {
    std::string text = input.titles + "\r\n";
    for (const std::string& record : input.records) text += record + "\r\n";
    return folder.write("in.csv", text);
  }
  std::string writeWorkbook(const Input& input) const {
    Texts rows{input.titles};
    rows.insert(rows.end(), input.records.begin(), input.records.end());
    return folder.write("in.xls", workbook(rows));
  }
};

void prepare(DriverWorld& world, const Story& story) {
  if (story.before == nullptr) return;
  const Setting letters("FAULT_LETTERS", story.before);
  world.importTo("before.csv", world.file);
  std::filesystem::remove(world.folder.path("Error.log"));
}

/// Nothing twice when all is well again, however the run is taken up.
void checkSequel(DriverWorld& world) {
  const std::string end = world.isWorkbook ? ".xls" : ".csv";
  const Ran resumed = world.importTo("resumed" + end, world.file, {"--resume"});
  if (contains(resumed.err, "the journal has no run of")) world.importTo("again" + end, world.file);
  if (world.folder.has(world.rejects())) {
    world.importTo("rejected" + end, world.folder.path(world.rejects()));
  }
  world.truth.checkNothingTwice();
}

void checkExport(const DriverWorld& world, const Ran& ran) {
  CHECK(contains(ran.out, "Wrote 1 salesman") == (ran.status == 0));
  CHECK((ran.status == 0 || !ran.out.empty() || !ran.err.empty()));
  if (world.folder.has("out.xls")) CHECK(!sheetRows(world.folder.path("out.xls")).empty());
}

void checkImport(DriverWorld& world, const Story& story, const Ran& ran) {
  if (ran.out.starts_with("{\"command\"")) {
    world.truth.check(Json(ran.out));
  } else {
    CHECK(ran.status >= 3);
    CHECK(!ran.err.empty());
  }
  if (story.before == nullptr && story.options.empty()) checkSequel(world);
  if (story.before != nullptr) world.truth.checkNothingTwice();
}

/// Answers how many calls there were.
std::size_t runOnce(const Story& story, const std::string& plan) {
  DriverWorld world(story);
  prepare(world, story);
  const bool isExport = story.options == std::vector<std::string>{"export"};
  Ran ran;
  {
    const Setting planned("FAULT_CALL", plan);
    ran = isExport ? world.exportNow() : world.importTo(world.rejects(), world.file, story.options);
  }
  CAPTURE(ran.out);
  CAPTURE(ran.err);
  const std::string calls = world.folder.read("calls");
  if (isExport) {
    checkExport(world, ran);
  } else {
    checkImport(world, story, ran);
  }
  return calls.empty() ? 0 : std::stoul(calls);
}

}  // namespace

TEST_CASE("driver faults: whatever fails, only what is known is said, and nothing is done twice") {
  for (const Story& story : stories) {
    CAPTURE(std::string(story.kind) + (story.options.empty() ? "" : story.options[0]));
    const std::size_t calls = runOnce(story, "");
    REQUIRE(calls > 20);
    for (std::size_t i = 0; i < calls * casesOfCall; i += triesAll()         ? 1
                                                          : OPNIMP_SANITIZED ? 997
                                                                             : 23) {
      const std::string plan = std::to_string(i / casesOfCall + 1) +
                               (i / 2 % 2 == 0 ? " before " : " after ") +
                               kinds[i / 4 % std::size(kinds)] + (i % 2 == 0 ? " once" : " ever");
      CAPTURE(plan);
      runOnce(story, plan);
    }
  }
}

}  // namespace velk
