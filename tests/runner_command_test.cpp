// The program as a command among others: pipes, what it tells, and what describes it to shells.
#include <doctest/doctest.h>

#include <cstdio>
#include <regex>
#include <set>
#include <sstream>

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

}  // namespace

TEST_CASE("standard input and output are files") {
  RunnerWorld world;
  const std::string bytes = "Customer ID;Bill Amount;Balance\nC001;1,5;1,5\nC999;2,5;2\n";
  const auto piped = [&](std::vector<std::string> args) {
    std::istringstream input(bytes);
    world.surroundings.input = &input;
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
              {{"import", world.kind, "-", "-"}, "- and - name one file"}};
  for (const auto& row : rows) {
    const Ran ran = piped(row.args);
    CHECK(ran.status == 3);
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
