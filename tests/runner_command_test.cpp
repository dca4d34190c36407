// The program as a command among others: pipes, what it tells, and what describes it to shells.
#include <doctest/doctest.h>

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <regex>
#include <set>
#include <thread>

#include "apps/opnimp/cli/line_colors.h"
#include "apps/opnimp/cli/progress.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

namespace {

std::set<std::string> found(const std::string& text, const char* pattern) {
  const std::regex what(pattern);
  std::set<std::string> all;
  for (std::sregex_iterator at(text.begin(), text.end(), what), end; at != end; ++at) {
    all.insert(at->str(1));
  }
  return all;
}

/// What a command of the system writes.
std::string outputOf(const std::string& command) {
  FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
  REQUIRE(pipe != nullptr);
  std::string text;
  for (int c = 0; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
  CHECK(::pclose(pipe) == 0);
  return text;
}

/// Takes the place of standard input as long as it lives.
class InputFrom {
 public:
  explicit InputFrom(int descriptor) { ::dup2(descriptor, STDIN_FILENO); }
  InputFrom(const InputFrom&) = delete;
  InputFrom& operator=(const InputFrom&) = delete;
  ~InputFrom() {
    ::dup2(kept_, STDIN_FILENO);
    ::close(kept_);
  }

 private:
  const int kept_ = ::dup(STDIN_FILENO);
};

}  // namespace

TEST_CASE("standard input is read to its end, or nothing of it is used") {
  RunnerWorld world;
  const std::vector<std::string> import{
      "import",     world.kind,      "-", "--app-folder", world.folder.path(""),
      "--database", world.database()};
  for (const auto& [path, says] :
       {std::pair{"/", "it is a folder"}, {"/proc/self/mem", "Device I/O error"}}) {
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    const InputFrom input(descriptor);
    ::close(descriptor);
    for (const auto& args : {import, {"convert", world.kind, "-", "-"}}) {
      const Ran ran = world.run(args);
      CHECK(ran.status == 4);
      CHECK(ran.out.empty());
      CHECK_MESSAGE(contains(ran.err, std::string("standard input could not be read: ") + says),
                    ran.err);
    }
  }
  // A writer that pauses, and a reading that does not wait; then one that died within a value.
  for (const auto& [last, status] : {std::pair{"C002,2,2", 2}, {"C002,2,2\n", 0}}) {
    int pipe[2];
    REQUIRE(::pipe2(pipe, O_NONBLOCK | O_CLOEXEC) == 0);
    const InputFrom input(pipe[0]);
    ::close(pipe[0]);
    std::thread writer([to = pipe[1], last = std::string_view(last)] {
      for (const auto part :
           {std::string_view("Customer ID,Bill Amount,Balance\nC001,1,1\n"), last}) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        CHECK(::write(to, part.data(), part.size()) > 0);
      }
      ::close(to);
    });
    const Ran ran = world.run(import);
    writer.join();
    CHECK(ran.status == status);
    CHECK(contains(ran.out, "HARMFUL: Standard input ends within a line") == (status == 2));
    CHECK(debits(world) == (status == 0 ? "2" : "0"));
  }
}

TEST_CASE("standard input and output are files") {
  RunnerWorld world;
  const std::string bytes = "Customer ID;Bill Amount;Balance\nC001;1,5;1,5\nC999;2,5;2\n";
  const auto piped = [&](std::vector<std::string> args) {
    world.surroundings.input = [&](std::size_t /*most*/) { return bytes; };
    return world.run(std::move(args));
  };
  const Ran convert = piped({"convert", world.kind, "-", "-"});
  CHECK(convert.status == 0);
  CHECK(convert.out == crlf({"Customer ID,Bill Amount,Balance", "C001,1.5,1.5", "C999,2.5,2"}));
  CHECK(contains(convert.err, "decimal sign: comma"));
  CHECK(piped({"convert", world.kind, "-", "-", "--quiet"}).err.empty());
  CHECK(contains(piped({"preview", world.kind, "-"}).out, "File: - (2 records)"));
  const std::string rejects = world.folder.path("r.csv");
  const Ran import = piped({"import", world.kind, "-", "--app-folder", world.folder.path(""),
                            "--database", world.database(), "--rejects", rejects, "--verbose"});
  CHECK(import.status == 1);
  CHECK(debits(world) == "1");
  CHECK(contains(world.folder.read("r.csv"), "C999,2.5,2\r\n"));
  CHECK(contains(import.err, "opnimp: begin, file -, run 1, kind customer-opening"));
  CHECK(contains(import.err, "opnimp: record, file -, record 2, line 3, outcome rejected"));
  CHECK(contains(import.err, "opnimp: end, file -, run 1, status 1"));
  const struct {
    std::vector<std::string> args;
    std::string_view says;
  } rows[] = {{{"preview", "salesman", "-"}, "a workbook is not read from standard input"},
              {{"split", "-"}, "a file needs a name here"},
              {{"demo-database", "-"}, "a file needs a name here"},
              {{"import", world.kind, "-", "-"}, "- and - name one file"},
              {{"import", world.kind, "-", "--report", "-"}, "--report needs the name of a file"},
              {{"import", world.kind, "-", "--rejects=-"}, "--rejects needs the name of a file"},
              {{"import", world.kind, "-", "--metrics", "-"}, "--metrics needs the name of a file"},
              {{"convert", world.kind, "none", "-", "--json", "--raw"},
               "{\"status\":3,\"error\":\"The following"},
              {{"convert", "salesman", rejects, "-", "--json"},
               "{\"status\":3,\"error\":\"a workbook is not"}};
  for (const auto& row : rows) {
    const Ran ran = piped(row.args);
    CHECK(ran.status == 3);
    CHECK(ran.out.empty());
    CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
  }
}

TEST_CASE("a quiet command tells of what did not go well only") {
  RunnerWorld world;
  world.terminal = true;
  const Ran well = world.importLines({openingTitles, good1}, {"-q"});
  CHECK(well.status == 0);
  CHECK(well.out + well.err == "");
  CHECK(contains(world.importLines({openingTitles, unknownCustomer}, {"-q"}).out, "C999"));
  CHECK(world.importLines({openingTitles, good2}, {"-q", "-v"}).status == 3);
}

TEST_CASE("the progress line tells the rate, and the time that is left") {
  CHECK(progressText(50, 100, 0, 1) == "50 of 100 records");
  CHECK(progressText(5'000, 32'766, 1'000, 4) ==
        "5,000 of 32,766 records, 1,000 a second, 27 s left");
  CHECK(progressText(10, 32'766, 0, 10) == "10 of 32,766 records, 1 a second, 545 minutes left");
}

TEST_CASE("the version is that of the changelog, with the commit and the engines") {
  const Ran ran = RunnerWorld().run({"--version"});
  const std::regex form(
      "opnimp ([0-9]+\\.[0-9]+\\.[0-9]+)\ncommit (?:[0-9a-f]{12}(?:-modified)?|unknown)\n"
      "engines SQL Server, SQLite, PostgreSQL, MariaDB\n");
  std::smatch parts;
  REQUIRE_MESSAGE(std::regex_match(ran.out, parts, form), ran.out);
  std::ifstream changes(OPNIMP_SOURCE_DIR "/CHANGELOG.md");
  std::string title;
  std::string blank;
  std::getline(changes, title);
  std::getline(changes, blank);
  std::getline(changes, title);
  CHECK(title == "## " + parts.str(1));
  CHECK(contains(RunnerWorld().run({"man"}).out, "\"opnimp " + parts.str(1) + "\""));
}

TEST_CASE("a terminal that wants colours shows lines of a sort in one") {
  std::ostringstream shown;
  {
    const LineColors colors(shown);
    shown << "Warnings\n    HARMFUL: x\n\nplain\rNext: a" << std::flush << "\n  li" << std::flush;
  }
  shown << "Account";
  CHECK(shown.str() ==
        "\x1B[1mWarnings\x1B[0m\n\x1B[1;31m    HARMFUL: x\x1B[0m\n\nplain\r"
        "\x1B[32mNext: a\x1B[0m\n  liAccount");
  CHECK(wantsColors("xterm", ""));
  for (const char* terminal : {static_cast<const char*>(nullptr), "dumb"}) {
    CHECK_FALSE(wantsColors(terminal, nullptr));
  }
  CHECK_FALSE(wantsColors("xterm", "1"));
}

TEST_CASE("manual page and completions know each command, option and kind of the help") {
  RunnerWorld world;
  const auto printed = [&](std::vector<std::string> args) {
    return world.run(std::move(args)).out;
  };
  const std::string manual = std::regex_replace(printed({"man"}), std::regex(R"(\\-)"), "-");
  const std::string bash = printed({"completion", "bash"});
  const std::string zsh = printed({"completion", "zsh"});
  const std::string fish = printed({"completion", "fish"});
  const auto commands = found(printed({"help"}), R"(\n  ([a-z][a-z-]+)  +[a-z])");
  CHECK(commands.size() == 15);
  CHECK(world.run({"completion", "sh"}).status == 3);
  for (const std::string& command : commands) {
    CAPTURE(command);
    CHECK(contains(manual, ".SS opnimp " + command));
    const std::string help = printed({"help", command});
    const bool isOfPages = command == "man" || command == "completion";
    CHECK((isOfPages || contains(help, "Examples:\n  opnimp " + command)));
    for (const std::string& option : found(help, R"(\n  (?:-[a-z],)?--([a-z-]+))")) {
      CAPTURE(option);
      CHECK(std::regex_search(manual, std::regex("--" + option + "[ \n]")));
      for (const std::string& script : {bash, zsh}) {
        const std::size_t at = script.find("    " + command + ")\n");
        CHECK(contains(script.substr(at, script.find(";;", at) - at), "--" + option));
      }
      CHECK(std::regex_search(fish, std::regex("from " + command + "'.* -l " + option + " ")));
    }
  }
  // As the shell runs it.
  const std::string script = world.folder.write("bash", bash);
  const auto completed = [&](const std::string& words, const char* at) {
    return outputOf("bash -euc 'source " + script + "; COMP_WORDS=(opnimp " + words +
                    "); COMP_CWORD=" + at + "; _opnimp; echo ${COMPREPLY[@]}'");
  };
  CHECK(completed("rev", "1") == "reversal\n");
  CHECK(completed("import vendor-", "2") == "vendor-opening\n");
  CHECK(completed("import vendor f.csv --dr", "4") == "--dry-run\n");
  const std::string page = world.folder.write("page", printed({"man"}));
  CHECK(outputOf("groff -man -z -ww " + page) == "");
  CHECK(contains(manual, ".B --map \\(dqField=Column\\(dq"));
}
