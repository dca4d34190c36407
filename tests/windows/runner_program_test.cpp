// opnimp.exe as Windows runs it: names and texts of any language, standard streams, statuses, ends.
#include <filesystem>

#include "platform/native/native_shell.h"
#include "platform/utf8_path.h"
#include "platform/windows/wide_text.h"
#include "samples/company/sample_company.h"
#include "tests/support/checks.h"
#include "tests/support/program.h"
#include "tests/support/shell_words.h"
#include "tests/windows/started_program.h"

namespace velk {
namespace {

/// Wine does not count the starts of the machine.
class CountedStart {
 public:
  CountedStart() {
    const DWORD count = 7;
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, L"BootId", REG_DWORD, &count, sizeof count);
  }
  ~CountedStart() { RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key, L"BootId"); }
  CountedStart(const CountedStart&) = delete;
  CountedStart& operator=(const CountedStart&) = delete;

 private:
  static constexpr const wchar_t* key =
      L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Memory Management\\PrefetchParameters";
};

/// A company, and a file of more records than are posted in a moment.
struct LongImport {
  static constexpr int records = 5000;
  TemporaryFolder folder;
  std::string database = folder.path("company.db");
  CountedStart start;

  LongImport() {
    createSampleCompany(database);
    std::string text = std::string(openingTitles) + "\r\n";
    for (int i = 0; i < records; ++i) text += "C001,A,R" + std::to_string(i) + ",,5,5\r\n";
    folder.write("in.csv", text);
  }
  std::vector<std::string> command(std::vector<std::string> more = {}) const {
    std::vector<std::string> args{"import", "customer-opening", folder.path("in.csv")};
    args.insert(args.end(), {"--database", database, "--app-folder", folder.path(".")});
    args.insert(args.end(), {"--journal", folder.path("journal")});
    args.insert(args.end(), more.begin(), more.end());
    return args;
  }
  int posted(const char* what = "count(*)") const {
    const auto connection = openOdbc(embeddedConnectionString(database));
    return std::stoi(ask(*connection, std::string("select ") + what + " from CustomerDebitNote"));
  }
  void waitForRecords(const StartedProgram& program) const {
    constexpr int some = 20;
    while (program.runs() && posted() < some) Sleep(10);
    REQUIRE(program.runs());
  }
};

TEST_CASE("the program: names and texts of any language, statuses, standard streams") {
  const TemporaryFolder folder;
  const std::string place = "B\xC3\xBCro \xD0\xB6";
  std::filesystem::create_directory(toPath(folder.path(place)));
  const auto at = [&](const char* name) { return folder.path(place + "\\" + name); };
  const std::string good = folder.write(place + "\\gut \xC3\xA4.csv", crlf({openingTitles, good1}));
  const std::string bad = folder.write(place + "\\bad.csv", crlf({openingTitles, unknownCustomer}));
  const std::string bars = folder.write("bars.csv", "Customer ID|Bill Amount|Balance\nC001|6|5\n");
  const std::vector<std::string> common{"--database", at("db"),    "--app-folder",
                                        at("."),      "--journal", at("journal")};
  const struct {
    std::vector<std::string> args;
    int status;
    std::string says;
    bool isImport = false;
    std::string input = {};
  } rows[] = {{{"demo-database", at("db")}, 0, ""},
              {{"import", "customer-opening", good}, 0, "gut \xC3\xA4.csv", true},
              {{"import", "customer-opening", bad}, 1, "C999", true},
              {{"import", "customer-opening", at("none.csv")}, 4, place, true},
              {{"import", "/nonsense"}, 3, "/nonsense"},
              {{"convert", "customer-opening", "-", "-"},
               0,
               "Customer ID,Bill Amount,Balance\r\nC001,6,5\r\n",
               false,
               bars}};
  for (const auto& row : rows) {
    std::vector<std::string> args = row.args;
    if (row.isImport) args.insert(args.end(), common.begin(), common.end());
    const int status = StartedProgram(folder, args, row.input).end();
    const std::string said = folder.read("out") + folder.read("err");
    CHECK_MESSAGE(status == row.status, said);
    CHECK_MESSAGE(contains(said, row.says), said);
    CHECK_FALSE(contains(said, "\r\r"));
  }
  CHECK(folder.has(place + "\\Error.log"));
}

TEST_CASE("the program: Ctrl+C ends an import with its account") {
  const LongImport world;
  const StartedProgram program(world.folder, world.command());
  world.waitForRecords(program);
  program.pressCtrlC();
  CHECK(program.end() == 5);
  const std::string said = world.folder.read("out");
  CHECK_MESSAGE(contains(said, "The account adds up."), said);
  CHECK(world.posted() < LongImport::records);
}

TEST_CASE("the program: an import that was killed is gone on with, and nothing is posted twice") {
  const LongImport world;
  {
    const StartedProgram program(world.folder, world.command());
    world.waitForRecords(program);
    program.kill();
    CHECK(program.end() == 99);
  }
  const Ran ran = runProgram(world.folder,
                             world.command({"--resume", "--rejects", world.folder.path("r.csv")}));
  CHECK_MESSAGE((ran.status == 0 || ran.status == 1), (ran.out + ran.err));
  CHECK(world.posted("count(*)") == world.posted("count(distinct DocReference)"));
  // The one that was being posted may be set apart.
  CHECK(world.posted() >= LongImport::records - 1);
}

TEST_CASE("the program: a word of a command to run stays one, or is not printed") {
  const std::pair<std::string, const char*> rows[] = {
      {"C:\\new.csv", "C:\\new.csv"},
      {"", "\"\""},
      {"#1", "\"#1\""},
      {"--map=a.b", "\"--map=a.b\""},
      {"it's \xC3\xA4, (b) & c", "\"it's \xC3\xA4, (b) & c\""}};
  for (const auto& [word, typed] : rows) {
    CHECK(shellWord(word) == typed);
    CHECK(shellWords(std::string("opnimp ") + typed) == std::vector<std::string>{"opnimp", word});
  }
  for (const char* word :
       {"a\" & calc \"", "%PATH%", "$(calc)", "a`b", "a b\\", "a\nb", "\xE2\x80\x9D; calc"}) {
    CAPTURE(word);
    CHECK_FALSE(shellWord(word));
  }
}

}  // namespace
}  // namespace velk
