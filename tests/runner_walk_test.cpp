// From a file as people have it to its import, by nothing but what the program prints.
#include <doctest/doctest.h>

#include "tests/support/documents.h"
#include "tests/support/runner.h"
#include "tests/support/shell_words.h"

using namespace velk;

namespace {

/// A command of the guide, whose quotes are those of Linux shells.
std::vector<std::string> guideWords(const std::string& command) {
  std::vector<std::string> words(1);
  char quote = 0;
  for (std::size_t i = 0; i < command.size(); ++i) {
    const char c = command[i];
    if (quote != 0 ? c == quote : c == '\'' || c == '"') {
      quote = quote != 0 ? '\0' : c;
    } else if (c == ' ' && quote == 0) {
      words.emplace_back();
    } else {
      words.back() += c == '\\' && quote == 0 ? command[++i] : c;
    }
  }
  return words;
}

/// Whether one of the commands to go on with is that one, as the machine's own shell takes it.
bool offers(const std::string& printed, const std::vector<std::string>& words) {
  constexpr std::string_view start = "`opnimp ";
  for (std::size_t at = 0; (at = printed.find(start, at)) != std::string::npos;) {
    const std::size_t end = printed.find("`\n", ++at);
    if (end != std::string::npos && shellWords(printed.substr(at, end - at)) == words) return true;
  }
  return false;
}

std::string titles(char separator) {
  std::string line(openingTitles);
  for (char& c : line) c = c == ',' ? separator : c;
  return line + "\r\n";
}

}  // namespace

TEST_CASE("walk: the guide's files are imported right, by running only what is printed") {
  namespace fs = std::filesystem;
  RunnerWorld world;
  for (const auto& entry : fs::directory_iterator(OPNIMP_SOURCE_DIR "/samples/messy")) {
    fs::copy_file(entry.path(), world.folder.path(entry.path().filename().string()));
  }
  const fs::path before = fs::current_path();
  fs::current_path(world.folder.path(""));
  world.surroundings.database = "company.db";
  Ran ran;
  int commands = 0;
  bool isConsole = false;
  bool isLeftOut = false;
  for (const std::string& line : linesOf(OPNIMP_SOURCE_DIR "/docs/runner-guide.md")) {
    CAPTURE(line);
    if (line.starts_with("```")) {
      isConsole = line == "```console";
    } else if (isConsole && line.starts_with("$ opnimp ")) {
      isLeftOut = isWindows && contains(line, " book.");  // which an application would open
      if (isLeftOut) continue;
      // What answers a refusal is a command that came with it.
      std::vector<std::string> words = guideWords(line.substr(2));
      if (ran.status == 2) CHECK_MESSAGE(offers(ran.out, words), ran.out);
      words.erase(words.begin());
      ran = world.run(words);
      CHECK_MESSAGE(ran.status <= 2, ran.err);
      ++commands;
    } else if (isConsole && !isLeftOut && !line.starts_with("$ ")) {
      if (isWindows && line.starts_with("Next:      `")) continue;  // in other quotes
      CHECK_MESSAGE(contains(ran.out, "\n" + line + "\n"), ran.out);
    }
  }
  fs::current_path(before);
  CHECK(commands == (isWindows ? 23 : 27));
  CHECK(ran.status == 0);
  const auto company = openOdbc(embeddedConnectionString(world.folder.path("company.db")));
  const std::string documents =
      "select group_concat(substr(CustomerID, 2) || ' ' || DocReference || ' ' || "
      "date(DocumentDate) || ' ' || Amount) from (select * from Customer";
  const std::string ofWorkbooks = ",010 INV-111 2008-03-04 1234.5,011 INV-112 2008-03-04 1234.5";
  CHECK(
      ask(*company, documents + "DebitNote order by CustomerID, DocReference)") ==
      "001 INV-0711 2008-03-31 12450.0,001 INV-101 2008-03-04 1234.5,002 INV-102 2008-03-05 880.0,"
      "003 INV-103 2008-03-04 1234.5,004 INV-104 2008-03-04 1234.5,"
      "005 INV-105 2008-03-04 1234.5,005 INV-106 2008-03-31 5.0,"
      "007 INV-108 2008-03-24 1234.5,008 INV-109 2008-03-13 1234.5,"
      "009 INV-110 2008-03-13 1234.5" +
          (isWindows ? std::string() : ofWorkbooks));
  CHECK(ask(*company, documents + "CreditNote)") == "006 CN-107 2008-03-14 1234.5");
  CHECK(ask(*company, "select count(*) from BankMaster where BankCode in ('BX', 'Total')") == "1");
}

TEST_CASE("walk: last lines are left out only where they are, and a password is not printed") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", crlf({openingTitles, good1, "x", ""}));
  const Ran refused = world.import(file, {"--skip-last-lines", "3"});
  CHECK(refused.status == 3);
  CHECK(contains(refused.err, "no 3 lines behind its titles"));
  CHECK(world.import(file, {"--skip-last-lines", "1"}).status == 0);
  world.kind = "bank-branch";
  for (const std::string_view total : {"Total,1,1,1", "Report end,1 bank,,", "Gesamtsumme,x,y,z",
                                       "TOTAL (2),,,", "-----,---,---,---"}) {
    const Ran ran = world.importLines({bankTitles, "BX,Bank X,X1,Main", total});
    CHECK(ran.status == 2);
    CHECK_MESSAGE(contains(ran.out, "--skip-last-lines 1"), ran.out);
  }
  CHECK(world.importLines({bankTitles, "Total,a,b,c", "SUM,x,y,z"}, {"--skip-last-lines", "0"})
            .status == 0);
  world.kind = "customer-opening";
  const Ran cut = world.import(world.folder.write(
      "cut.csv", titles(';') + "C001;A;R8;13.03.2008;1,5;1\nC002;B;R9;13.03.2008;2\n"));
  CHECK(cut.status == 2);
  CHECK_FALSE(contains(cut.out, "--skip-last-lines"));
  const std::string undecided = titles(';') + "C001;;;01.02.08;1,5;1\n";
  const Ran told =
      world.run({"import", "customer-opening", world.folder.write("d", undecided), "--database",
                 embeddedConnectionString(world.database()) + ";PWD=secret"});
  CHECK(contains(told.out, "--date-order mdy"));
  CHECK_FALSE(contains(told.out, "secret"));
}
