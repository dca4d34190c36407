// Workbooks of every kind of record, in every format: .xls, .xlsx and .ods.
#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <vector>

#include "platform/native/confined_work.h"
#include "platform/spreadsheet/zipped/zipped_workbook.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"
#include "tests/support/salesmen.h"
#include "tests/support/zipped_workbooks.h"

using namespace velk;

namespace {

using Sheets = std::vector<TestSheet>;

const std::string openingCaptions = "|Customer ID|Customer Name|Reference|Date|Bill Amount|Balance";
const std::string balance = "|C001|Caf\xC3\xA9, x|%12|#2008-02-29|$1234.567|?60.5";

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  std::string made;
  for (std::size_t at = 0; (at = text.find(from)) != std::string::npos;) {
    made.append(text, 0, at).append(to);
    text.erase(0, at + from.size());
  }
  return made + text;
}

/// The parts with one text of theirs replaced.
ZipParts changed(ZipParts parts, std::string_view from, std::string_view to) {
  for (auto& [name, bytes] : parts) bytes = replaced(std::move(bytes), from, to);
  return parts;
}

const Sheets oneBalance{{"Balances", {"", openingCaptions, balance}}};

}  // namespace

TEST_CASE("workbooks: cells are imported by value where the column is one, else as they show") {
  const Sheets sheets{
      {"Balances", {"", "|Opening balances", "", openingCaptions, balance, "", "|C002|B|R&2||5|5"}},
      {"Old", {"x"}, true}};
  const struct {
    std::string name, bytes;
  } files[] = {{"a.xlsx", zipped(xlsxParts(sheets))},
               {"a.xls", zipped(xlsxParts(sheets))},
               {"a.ods", zipped(odsParts(sheets))},
               {"a.xlsx", zipped(odsParts(sheets))}};
  for (const auto& file : files) {
    CAPTURE(file.name);
    RunnerWorld world;
    const Ran ran = world.import(world.folder.write(file.name, file.bytes), {"--json"});
    CHECK_MESSAGE(ran.status == 0, ran.out << ran.err);
    const Json report(ran.out);
    CHECK(report.at("records[1].row") == "7");
    CHECK(report.at("assumed[0].value") == "Balances");
    CHECK(contains(report.at("assumed[0].reason"), "\"Old\" (hidden)"));
    CHECK(
        world.ask("select group_concat(DocReference || ' ' || date(DocumentDate) || ' ' || Amount)"
                  " from CustomerDebitNote") == "00012 2008-02-29 1234.567,R&2 2008-03-31 5.0");
  }
}

TEST_CASE("workbooks: a sheet is taken where there is no doubt, else they are named") {
  const TestSheet one = oneBalance.front();
  const TestSheet notes{"Notes", {"Column|Nature", "Customer ID|text"}};
  const TestSheet other{"More", one.rows};
  const TestSheet hidden{"Old", one.rows, true};
  const struct {
    Sheets sheets;
    std::string option, said;
    int status = 2;
  } rows[] = {
      {{notes, one}, "", "Balances (no other one has titles of customer-opening;", 0},
      {{{"Empty", {}}, one, hidden}, "", "blank; left out: \"Old\" (hidden)", 0},
      {{notes, one}, "", "; left out: \"Notes\"", 0},
      {{one, {"Rest", {"|C2|B|R2|x|5|5"}}}, "", "--sheet NAME; there is \"Balances\", \"Rest\""},
      {{one, other}, "", "--sheet NAME; there is \"Balances\", \"More\""},
      {{one, other},
       "more",
       "More (given with --sheet; #1 is its column B, those before it are blank)",
       0},
      {{one, hidden}, "#2", "Old (given with --sheet; #1 is", 0},
      {{hidden}, "", "are hidden: say which is meant with --sheet NAME; there is \"Old\" (hidden)"},
      {{one, hidden}, "x", "no sheet \"x\"; it has \"Balances\", \"Old\" (hidden)"},
      {{{"A", {"", "| "}}}, "", "the workbook is blank"},
      {{one, {"Empty", {}}}, "Empty", "the sheet \"Empty\" is blank"}};
  for (const auto& row : rows) {
    for (const bool isXlsx : {true, false}) {
      CAPTURE(row.said);
      RunnerWorld world;
      const std::string file =
          world.folder.write("in", zipped(isXlsx ? xlsxParts(row.sheets) : odsParts(row.sheets)));
      std::vector<std::string> args{"convert", "customer-opening", file, world.folder.path("out")};
      if (!row.option.empty()) args.insert(args.end(), {"--sheet", row.option});
      const Ran ran = world.run(args);
      CHECK(ran.status == row.status);
      CHECK_MESSAGE(contains(ran.out, row.said), ran.out);
      CHECK(world.folder.has("out") == (row.status == 0));
    }
  }
  RunnerWorld world;
  const std::string both = world.folder.write(
      "both",
      zipped(xlsxParts({one, {"More", {"", openingCaptions, "|C002||7|#2008-03-01|5|5"}}})));
  for (const auto& row : {std::pair("Balances", 0), {"More", 0}, {"Balances", 2}, {"more", 2}}) {
    CAPTURE(row.first);
    CHECK(world.import(both, {"--sheet", row.first}).status == row.second);
  }
  const std::string book = world.folder.write("b", zipped(xlsxParts(oneBalance)));
  CHECK(world.import(book, {"--delimiter", "tab"}).status == 3);
  CHECK(world.importLines({openingTitles, good1}, {"--sheet", "A"}).status == 3);
}

TEST_CASE("workbooks: a formula without a value is not imported unless that is accepted") {
  for (const auto& make : {xlsxParts, odsParts}) {
    RunnerWorld world;
    const Sheets sheets{{"S", {openingCaptions, "|C001|?|R1||5|1", "|C002|!#N/A|R2||5|1"}}};
    const std::string file = world.folder.write("in", zipped(make(sheets)));
    const Ran ran = world.import(file);
    CHECK(ran.status == 2);
    CHECK(contains(ran.out, "--accept uncalculated-formulas,error-values"));
    CHECK(contains(ran.out, "row 2, in Customer Name"));
    CHECK(debits(world) == "0");
    CHECK(world.import(file, {"--accept", "all"}).status == 1);
    CHECK(debits(world) == "2");
  }
  // Programs that do not calculate write 0 and ask for a calculation.
  ZipParts parts = xlsxParts({{"S", {openingCaptions, "|C001|A|R1||?0|1"}}});
  const std::string asks = "<calcPr fullCalcOnLoad=\"1\"/></workbook>";
  RunnerWorld world;
  const Ran ran =
      world.import(world.folder.write("in", zipped(changed(parts, "</workbook>", asks))));
  CHECK(contains(ran.out, "--accept uncalculated-formulas"));
}

TEST_CASE("workbooks: what cells show beside their numbers is not lost") {
  const auto bill = [](auto make, const std::string& amount) {
    return make({{"S", {openingCaptions, "|C001|A|R1|#2004-02-28|" + amount + "|1"}}});
  };
  const auto shown = [&](const std::string& format, const std::string& amount = "%100") {
    return changed(bill(xlsxParts, amount), "Code=\"00000", "Code=\"" + format);
  };
  const auto odsShown = [&](const std::string& text) {
    return changed(bill(odsParts, "%100"), "00100", text);
  };
  const std::string none = "(none)";
  const std::string later =
      "<workbookPr date1904=\"1\"/><e:x xmlns:e=\"e\"><e:workbookPr/></e:x></workbook>";
  const struct {
    ZipParts parts;
    std::string said, posted;
  } rows[] = {{changed(bill(xlsxParts, "100"), "</workbook>", later), "", "2008-02-29 100.0"},
              {changed(bill(xlsxParts, "100"), "Target=\"sheet", "Target=\"./sheet"), "",
               "2004-02-28 100.0"},
              {shown("0.00&quot; Cr&quot;"), "the first being 100.00 Cr in line 2", none},
              {shown("(0.00)"), "another sign", none},
              {shown("0%"), "shown as percentages", none},
              {shown("&quot;-&quot;0.00"), "another sign", none},
              {shown("0.00&quot; Cr&quot;;0.00&quot; Dr&quot;", "%-100"), "another sign", none},
              {shown("0.00&quot; Cr&quot;", "%-100"), "the first being -100.00 Cr", none},
              {shown("0.00&quot; Dr&quot;;0.00&quot; Cr&quot;"), "", "2004-02-28 100.0"},
              {shown("0.00;[Red]0.00", "%-100"), "1 amount is shown without a sign", none},
              {odsShown("100.00 Cr"), "another sign", none},
              {changed(bill(xlsxParts, "100"), "<row><c r=\"B2", "<row hidden=\"1\"><c r=\"B2"),
               "(1, row 2, in", none},
              {changed(bill(xlsxParts, "100"), "<sheetData>",
                       "<cols><col min=\"6\" max=\"9\" hidden=\"true\"/></cols><sheetData>"),
               "(1, row 2, in Bill Amount, Balance", none},
              {changed(bill(odsParts, "100"), "<table:table-row>",
                       "<table:table-row table:visibility=\"filter\">"),
               "--accept hidden-rows", none},
              {changed(bill(odsParts, "100"), "<table:table table:name=\"S\">",
                       "<table:table table:name=\"S\"><table:table-column "
                       "table:number-columns-repeated=\"5\"/><table:table-column "
                       "table:visibility=\"collapse\" table:number-columns-repeated=\"16379\"/>"),
               "(1, row 2, in Bill Amount, Balance", none},
              {changed(bill(xlsxParts, "100"), "</sheetData>",
                       "</sheetData><mergeCells><mergeCell ref=\"E2:F2\"/></mergeCells>"),
               "(1, row 2, in Bill Amount", none},
              {changed(bill(xlsxParts, "100"), "<row><c r=\"B2", "<row ht=\"0\"><c r=\"B2"),
               "(1, row 2, in", none},
              {changed(bill(xlsxParts, "100"), "<sheetData>",
                       "<cols><col min=\"6\" max=\"9\" width=\"0\"/></cols><sheetData>"),
               "(1, row 2, in Bill Amount, Balance", none},
              {shown(";;;"), "--accept hidden-rows", none},
              {shown("&quot;paid&quot;"), "--accept hidden-rows", none},
              {odsShown("paid"), "--accept hidden-rows", none},
              {changed(bill(odsParts, "100"), "table:table-cell", "table:covered-table-cell"),
               "--accept hidden-rows", none},
              {changed(changed(bill(odsParts, "100"), "</table:table-row>",
                               "</table:table-row></table:table-row-group>"),
                       "<table:table-row>",
                       "<table:table-row-group table:display=\"false\"><table:table-row>"),
               "--accept hidden-rows", none},
              {changed(changed(bill(odsParts, "100"), "<table:table-row>",
                               "<table:table-row table:visibility=\"filter\">"),
                       "<table:table table:name=\"S\">",
                       "<table:table table:name=\"S\"><table:shapes><table:table>"
                       "<table:table-row/></table:table></table:shapes>"),
               "(1, row 2, in", none},
              {odsShown("#DIV/0!"), "--accept error-values", none},
              {odsShown("$100"), "", "2004-02-28 100.0"},
              {changed(changed(odsParts({{"S", {openingCaptions, "|C001|A|R1||%100|$5"}}}), "00100",
                               "$100"),
                       "1,1", "EUR 5"),
               "several currencies", none}};
  for (const auto& row : rows) {
    RunnerWorld world;
    const Ran ran = world.import(world.folder.write("in", zipped(row.parts)));
    CHECK_MESSAGE(contains(ran.out, row.said), ran.out);
    CHECK_MESSAGE(world.ask("select date(DocumentDate) || ' ' || Amount from CustomerDebitNote") ==
                      row.posted,
                  ran.out);
  }
}

TEST_CASE("workbooks: salesmen come from any format, and become an .xls workbook") {
  const std::string newMan = "New Man|=1+1|00123|0099|x|Retail|YES";
  const std::string second = "Second|||||Retail|";
  const Sheets sheets{{"Notes", {"x"}}, {"Men", {salesmanTitles, newMan, second}}};
  for (const auto& make : {xlsxParts, odsParts}) {
    RunnerWorld world;
    world.kind = "salesman";
    const std::string file = world.folder.write("in.xlsx", zipped(make(sheets)));
    CHECK(contains(world.import(file).out, "A1 holds \"x\""));
    CHECK(world.run({"convert", "salesman", file, world.folder.path("o.xls"), "--sheet", "Men"})
              .status == 0);
    CHECK(sheetRows(world.folder.path("o.xls")) == Texts{salesmanTitles, newMan, second});
    CHECK(world.import(file, {"--sheet", "Men"}).status == 0);
    CHECK(world.import(file, {"--sheet", "Men", "--from-line", "3"}).status == 0);
    CHECK(contains(world.run({"report", "1"}).out, "sheet: Men (given with --sheet)"));
    CHECK(world.run({"rejects", "1", world.folder.path("r.xls")}).status == 0);
    CHECK(world.ask("select Address from Salesman where Salesman_name = 'New Man'") == "=1+1");
    CHECK(world.import(world.folder.path("o.xls"), {"--sheet", "#1"}).status == 0);
  }
}

TEST_CASE("workbooks: a damaged or hostile one is refused in time, and nothing is imported") {
  const ZipParts xlsx = xlsxParts(oneBalance);
  const ZipParts ods = odsParts(oneBalance);
  const std::string whole = zipped(xlsx);
  std::string rows;
  while (rows.size() < 8U << 20U) rows += "<row/>";
  const std::string lol =
      "<!DOCTYPE l [<!ENTITY a \"lol\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
      "<!ENTITY c SYSTEM \"file:///etc/passwd\">]><worksheet>";
  const auto repeated = [&](const std::string& attributes) {
    return changed(ods, "<table:table-cell office", "<table:table-cell " + attributes + " office");
  };
  std::string flipped = whole;
  flipped[whole.find("xl/sheet") + 40] ^= 1;
  std::string otherwise = zipped(changed(xlsx, "C001", "C009"));
  otherwise.replace(0, otherwise.rfind("PK\x01\x02"), whole.substr(0, whole.rfind("PK\x01\x02")));
  const struct {
    std::string what, bytes;
  } files[] = {
      {"half a file", whole.substr(0, whole.size() / 2)},
      {"its last byte", whole.substr(0, whole.size() - 23)},
      {"a bit", flipped},
      {"an archive of something else", zipped({{"a", "b"}})},
      {"nothing in it", zipped({})},
      {"a part is missing", zipped(changed(xlsx, "Target=\"sheet", "Target=\"other"))},
      {"a part twice", zipped({ods[1], ods[1]})},
      {"a part of itself", zipped(changed(xlsx, "Target=\"sheet2.xml", "Target=\"workbook.xml"))},
      {"a part outside", zipped(changed(xlsx, "Target=\"sheet2.xml", "Target=\"../../etc/passwd"))},
      {"entities", zipped(changed(xlsx, "<worksheet>", lol))},
      {"half an element", zipped(changed(xlsx, "</worksheet>", ""))},
      {"a text that is none", zipped(changed(xlsx, "t=\"inlineStr\"", "t=\"s\""))},
      {"a number that is none", zipped(changed(xlsx, "<v>12<", "<v>1x2<"))},
      {"a cell twice", zipped(changed(xlsx, "r=\"C3\"", "r=\"B3\""))},
      {"a cell far outside", zipped(changed(xlsx, "r=\"C3\"", "r=\"ZZZZ3\""))},
      {"depth", zipped(changed(xlsx, "<sheetData>", replaced(std::string(999, 'x'), "x", "<a>")))},
      {"rows without end",
       zipped({xlsx[0], xlsx[1], {xlsx[2].first, "<worksheet>" + rows}, xlsx[3], xlsx[4]})},
      {"cells for ever", zipped(repeated("table:number-columns-repeated=\"16000\""))},
      {"rows for ever",
       zipped(changed(ods, "<table:table-row>",
                      "<table:table-row table:number-rows-repeated=\"1048000\">"))},
      {"more columns than there are", zipped(repeated("table:number-columns-repeated=\"99999\""))},
  };
  // A part that nobody reads gives no time to read the others in.
  ZipParts more = xlsx;
  more.emplace_back("junk.bin", whole);
  CHECK(bytesToRead(zipped(more)) == bytesToRead(whole));
  RunnerWorld world;
  for (const auto& file : files) {
    CAPTURE(file.what);
    const std::string path = world.folder.write("in", file.bytes);
    const auto start = std::chrono::steady_clock::now();
    const Ran ran = world.import(path);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    CHECK_MESSAGE(ran.status == 2, ran.out << ran.err);
    if (!OPNIMP_SANITIZED) CHECK(took.count() < 2);
    CHECK(contains(ran.out, "\nRefused: "));
  }
  CHECK(debits(world) == "0");
}

TEST_CASE("workbooks: what reads them can compute and nothing else") {
  using End = WorkResult::End;
  const WorkLimits limits{std::size_t{64} << 20U, std::chrono::seconds(1), std::chrono::seconds(2),
                          100};
  const auto endOf = [&](const std::function<void(const HandBack&)>& work) {
    return workConfined(limits, work);
  };
  CHECK(endOf([](const HandBack& say) { say("yes"); }).bytes == "yes");
  CHECK(endOf([](const HandBack& say) { say(std::string(101, 'x')); }).end == End::TooLong);
  CHECK(endOf([](const HandBack&) { ::_exit(0); }).end == End::Whole);
  CHECK(endOf([](const HandBack&) { ::abort(); }).end == End::Broken);
  CHECK(endOf([](const HandBack&) { throw 1; }).end == End::Broken);
  if (OPNIMP_SANITIZED) return;  // whose builds limit less
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit low{std::size_t{400} << 20U, std::size_t{400} << 20U};
    ::setrlimit(RLIMIT_AS, &low);
    const WorkLimits more{std::size_t{1} << 30U, limits.computing, limits.waiting, 100};
    const WorkResult said = workConfined(more, [](const HandBack& say) { say("yes"); });
    ::_exit(said.bytes == "yes" ? 0 : 1);
  }
  int status = 1;
  ::waitpid(child, &status, 0);
  CHECK(status == 0);
  const auto tried = endOf([](const HandBack& say) {
    const auto tell = [&](bool can) { say(can ? "can " : "not "); };
    tell(::open("/etc/passwd", O_RDONLY) >= 0);
    tell(::socket(AF_INET, SOCK_STREAM, 0) >= 0);
    tell(::unlink("nothing-there") == 0 || errno == ENOENT);
    tell(::fork() >= 0);
  });
  CHECK(tried.bytes == "not not not not ");
  CHECK(endOf([](const HandBack&) {
          for (volatile bool on = true; on;) {
          }
        }).end == End::NoTime);
  CHECK(endOf([](const HandBack& say) {
          say(std::string(std::size_t{200} << 20U, 'x').substr(0, 1));
        }).end == End::NoMemory);
}
