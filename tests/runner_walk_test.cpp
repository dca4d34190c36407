// From a file as people have it to its import, by nothing but what the program prints.
#include <doctest/doctest.h>
#include <wordexp.h>

#include "base/text.h"
#include "tests/support/runner.h"
#include "tests/support/zipped_workbooks.h"

using namespace velk;

namespace {

/// The words of the printed command that has the part in it; empty if there is none.
std::vector<std::string> printedCommand(const std::string& said, const std::string& part) {
  constexpr std::string_view begin = "Next:      `opnimp ";
  for (std::size_t at = 0; (at = said.find(begin, at)) != std::string::npos;) {
    at += begin.size();
    const std::string command = said.substr(at, said.find('\n', at) - at - 1);
    if (!contains(command, part)) continue;
    wordexp_t words{};
    REQUIRE(::wordexp(command.c_str(), &words, WRDE_NOCMD | WRDE_UNDEF) == 0);
    std::vector<std::string> split(words.we_wordv, words.we_wordv + words.we_wordc);
    ::wordfree(&words);
    return split;
  }
  return {};
}

std::string utf16(std::string_view text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : toUtf16(text)) {
    bytes += static_cast<char>(unit & 0xFFU);
    bytes += static_cast<char>(unit >> 8U);
  }
  return bytes;
}

std::string titles(char separator) {
  std::string line(openingTitles);
  for (char& c : line) c = c == ',' ? separator : c;
  return line + "\r\n";
}

}  // namespace

TEST_CASE("walk: ten files are imported right by running only what is printed") {
  const std::string notes =
      "select group_concat(DocReference || ' ' || date(DocumentDate) || ' ' || Amount) from ";
  const std::string debit = notes + "CustomerDebitNote";
  const std::string one = "R1 2008-03-04 1234.5";
  const std::vector<TestSheet> sheets{
      {"2008",
       {"|Opening", "", "|Customer ID|Customer Name|Reference|Date|Bill Amount|Balance",
        "|C001|A|R1|#2008-03-04|$1234.5|60"}},
      {"2007", {"Customer ID|Date|Bill Amount|Balance", "C001|#2007-03-03|5|5"}}};
  const struct {
    std::string name, bytes, query, want;
    std::vector<std::string> picks = {};  // of what is printed, each time
    std::string kind = "customer-opening";
  } files[] = {
      {"semicolons.csv",
       titles(';') + "C001;A;R1;04.03.2008;1.234,50;60,00\n",
       debit,
       one,
       {"dmy"}},
      {"utf-8.csv", "\xEF\xBB\xBF" + titles(',') + "C001,Caf\xC3\xA9,R1,2008-03-04,1234.50,60\r\n",
       debit, one},
      {"unicode text.txt",
       utf16(titles('\t') + "C001\tA\tR1\t04/03/2008\t\"1,234.50\"\t60\r\n"),
       debit,
       one,
       {"dmy"}},
      {"months.csv",
       titles(',') + "C001,A,R1,03/04/2008,1234.50,60\r\nC002,B,R2,03/31/2008,5,5\r\n", debit,
       one + ",R2 2008-03-31 5.0"},
      {"parentheses.csv", titles(',') + "C001,A,R1,04/03/2008,(1234.50),(60.00)\r\n",
       notes + "CustomerCreditNote", one},
      {"it's german.csv",
       "Kundennummer;Name;Ref No;Datum;Amount;Saldo\r\nC001;A;R1;04.03.2008;1.234,50;60,00\r\n",
       debit,
       one,
       {"--map", "dmy"}},
      {"above.csv",
       "Opening\r\n\r\nAs of March, in INR\r\n" + titles(',') +
           "C001,A,R1,13/03/2008,1234.50,60\r\n",
       debit,
       "R1 2008-03-13 1234.5",
       {"--header-line 4"}},
      {"book.xlsx", zipped(xlsxParts(sheets)), debit, one, {"#1"}},
      {"book.ods", zipped(odsParts(sheets)), debit, one, {"#1"}},
      {"bank.csv",
       std::string(bankTitles) + "\r\nBX,Bank X,X1,Main\r\nTotal,,1\r\n",
       "select count(*) from BankMaster where BankCode in ('BX', 'Total')",
       "1",
       {"--skip-last-lines 1"},
       "bank-branch"},
      {"totals.csv",
       titles(';') + "C001;A;R1;13.03.2008;1.234,50;60,00\r\nTotal;;1.234,50\r\n\r\n",
       debit,
       "R1 2008-03-13 1234.5",
       {"--skip-last-lines 1"}},
  };
  for (const auto& file : files) {
    CAPTURE(file.name);
    RunnerWorld world;
    std::vector<std::string> command{"import",
                                     file.kind,
                                     world.folder.write(file.name, file.bytes),
                                     "--database",
                                     world.database(),
                                     "--app-folder",
                                     world.folder.path("")};
    Ran ran = world.run(command);
    for (const std::string& pick : file.picks) {
      CHECK(ran.status == 2);
      command = printedCommand(ran.out, pick);
      REQUIRE_MESSAGE(!command.empty(), ran.out);
      ran = world.run(command);
    }
    CHECK_MESSAGE(ran.status == 0, ran.out);
    CHECK(world.ask(file.query) == file.want);
  }
}

TEST_CASE("walk: last lines are left out only where they are, and a password is not printed") {
  RunnerWorld world;
  const std::string file = world.folder.write("in.csv", crlf({openingTitles, good1, "x", ""}));
  const Ran refused = world.import(file, {"--skip-last-lines", "3"});
  CHECK(refused.status == 3);
  CHECK(contains(refused.err, "no 3 lines behind its titles"));
  CHECK(world.import(file, {"--skip-last-lines", "1"}).status == 0);
  const Ran cut = world.import(world.folder.write(
      "cut.csv", titles(';') + "C001;A;R8;13.03.2008;1,5;1\nC002;B;R9;13.03.2008;2\n"));
  CHECK(cut.status == 2);
  CHECK_FALSE(contains(cut.out, "--skip-last-lines"));
  const std::string undecided = titles(';') + "C001;;;01.02.08;1,5;1\n";
  const Ran told =
      world.run({"import", "customer-opening", world.folder.write("d", undecided), "--database",
                 "Driver=SQLite3;PWD=secret;Database=" + world.database()});
  CHECK(contains(told.out, "--date-order mdy"));
  CHECK_FALSE(contains(told.out, "secret"));
}
