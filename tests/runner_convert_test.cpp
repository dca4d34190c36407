// Files of other programs become those that the screens read: what they are in, how they are laid
// out, how their dates and amounts are written.
#include <doctest/doctest.h>

#include "base/text.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

namespace {

/// A file of one record under the titles.
std::string fileOf(std::string_view record) {
  return std::string(openingTitles).append("\r\n").append(record).append("\r\n");
}

/// The same with another separator, for values with commas.
std::string semicolons(std::string_view record) {
  std::string file = std::string(openingTitles) + "\r\n";
  for (char& c : file) c = c == ',' ? ';' : c;
  return file.append(record).append("\r\n");
}

std::string utf16(std::string_view text, bool isBigEndian) {
  std::string bytes;
  for (const char16_t unit : toUtf16(text)) {
    const char low = static_cast<char>(unit & 0xFFU);
    const char high = static_cast<char>(unit >> 8U);
    bytes += isBigEndian ? high : low;
    bytes += isBigEndian ? low : high;
  }
  return bytes;
}

struct Converted {
  Ran ran;
  std::string bytes;
  std::string said(const char* path) const { return Json(ran.out).at(path); }
};

Converted converted(std::string_view bytes, std::vector<std::string> more = {},
                    const std::string& kind = "customer-opening") {
  RunnerWorld world;
  std::vector<std::string> args{"convert", kind, world.folder.write("in", bytes),
                                world.folder.path("out"), "--json"};
  args.insert(args.end(), more.begin(), more.end());
  const Ran ran = world.run(args);
  CHECK(world.folder.has("out") == (ran.status == 0));
  return {ran, world.folder.read("out")};
}

/// What becomes of one value: the bill amount or the date of a file with semicolons.
std::string valueOf(const std::string& bill, const std::string& date,
                    const std::vector<std::string>& more) {
  const Converted file = converted(semicolons("C001;;R;" + date + ";" + bill + ";0"), more);
  if (file.ran.status != 0) return file.said("refused");
  const std::size_t start = openingTitles.size() + 2 + std::string_view("C001,,R,").size();
  const std::size_t end = file.bytes.size() - std::string_view(",0\r\n").size();
  return file.bytes.substr(start, end - start);
}

}  // namespace

TEST_CASE("a file in any encoding and layout becomes the one that the screens read") {
  const std::string want = fileOf("C001,Caf\xE9 \x80,R1,31/03/2008,1250.50,60.00");
  const std::string text = fileOf("C001,Caf\xC3\xA9 \xE2\x82\xAC,R1,31/03/2008,1250.50,60.00");
  const auto with = [](std::string in, char separator, std::string_view lineEnd) {
    for (char& c : in) c = c == ',' ? separator : c;
    for (std::size_t at = 0; (at = in.find("\r\n", at)) != std::string::npos;) {
      in.replace(at, 2, lineEnd);
      at += lineEnd.size();
    }
    return in;
  };
  const struct {
    std::string bytes, reason;
    std::vector<std::string> more = {};
  } rows[] = {
      {text, "all letters beyond ASCII, the first in line 2, are UTF-8"},
      {"\xEF\xBB\xBF" + text, "the file begins with its byte-order mark"},
      {"\xFF\xFE" + utf16(text, false), "the file begins with its byte-order mark"},
      {"\xFE\xFF" + utf16(text, true), "the file begins with its byte-order mark"},
      {utf16(text, false), "every second byte of a pair is NUL, as in UTF-16 without a mark"},
      {utf16(text, true), "every first byte of a pair is NUL, as in UTF-16 without a mark"},
      {with(text, ';', "\n"), "2 lines end in a line feed"},
      {with(want, '\t', "\r"), "2 lines end in a carriage return"},
      {with(want, ';', "\r\r\n"), "2 lines end in them"},
      {with(text, ';', "\n") + ";;;;;\n", "1 row, the first being that of line 3"},
      {want + ",,\"\",,,\r\n", "1 row, the first being that of line 3"},
      {with(want, '|', "\r\n"), "1 of 1 line has 6 values"},
      {"sep=;\n" + with(text, ';', "\n"), "line 1 says sep=;, and 1 of 1 line has 6 values"},
      {"Balances\n\nof 2008\n" + text, "it holds 6 titles of customer-opening"},
      {"x\r\nDate\r\n" + want, "line 4 is no UTF-8", {"--skip-lines", "2"}},
      {"x\r\nDate\r\n" + want, "line 4 is no UTF-8", {"--header-line", "3"}},
      {text, "31/03/2008 in line 2", {"--encoding", "utf-8"}},
      {text, "the first in line 2, are UTF-8", {"--encoding", "Auto"}},
      {"\"Customer ID\"" + want.substr(11), "line 1 has them in quotes"},
      {"C001" + text.substr(11) + text.substr(0, 0),
       "all letters beyond ASCII",
       {"--map", "Customer ID=C001"}},
  };
  for (const auto& row : rows) {
    CAPTURE(row.reason);
    const Converted file = converted(row.bytes, row.more);
    CHECK_MESSAGE(contains(file.ran.out, row.reason), file.ran.out);
    CHECK(file.bytes == want);
  }
  // A character of two units where a long text is cut into blocks.
  const std::string name(16383 - fileOf("C001,").size() + 2, 'x');
  const auto named = [&](const char* last) { return fileOf("C001," + name + last + ",R1,,1,1"); };
  CHECK(converted("\xFF\xFE" + utf16(named("\xF0\x9F\x98\x80"), false), {"--replace"}).bytes ==
        named("?"));
  // Cyrillic, which windows-1252 does not have.
  const std::string cyrillic = "C001,\xC8\xE2\xE0\xED,R1,,1,1";
  CHECK(contains(converted(fileOf(cyrillic), {"--encoding", "windows-1251"}).said("refused"),
                 "in line 2"));
  const Converted replaced =
      converted(fileOf(cyrillic), {"--encoding", "windows-1251", "--replace"});
  CHECK(replaced.bytes == fileOf("C001,????,R1,,1,1"));
  CHECK(replaced.said("assumed[1].what") == "letters that windows-1252 does not have");
}

TEST_CASE("a file that the screens read goes through byte for byte") {
  for (const std::string& bytes :
       {fileOf("C001,\"a, b\",R1,31/03/2008,\"1,250.00\",12.50\r\n\r\nC1"),
        fileOf("C001,\"a\nb\",R\r1,03/04/2008,\"1,250\",1.250"),
        fileOf("C001,\"a,R1,31/03/2008,1,1"), fileOf("C001,a,R\xA0,2008-03-31,soon,-5"),
        fileOf("C001,a,R1,31/03/2008,12.50,1\r\nC002,a,R1,03/31/2008,\"12,50\",$5 USD")}) {
    CAPTURE(bytes);
    const Converted file = converted(bytes);
    CHECK(file.ran.status == 0);
    CHECK(file.bytes == bytes);
  }
}

TEST_CASE("an amount and a date are written as the screens read them") {
  const std::string undecidedDate = "03/04/2008", undecidedAmount = "1.250";
  const struct {
    std::string bill, date, want;
    std::vector<std::string> more = {};
  } rows[] = {
      {"1.234,50", "", ",1234.50"},
      {"1.234.567", "", ",1234567"},
      {"1,23,456.00", "", ",123456.00"},
      {"12,5", "", ",12.5"},
      {"50,-", "", ",50"},
      {"1.234,-", "", ",1234"},
      {"1.234,--", "", ",1234"},
      {"1,234.-", "", ",1234"},
      {"CHF 50.\xE2\x80\x93", "", ",50"},
      {"0.00 Cr", "", ",0.00"},
      {"0,125", "", ",0.125"},
      {"1 234,50", "", ",1234.50"},
      {"1\xC2\xA0"
       "234,50",
       "", ",1234.50"},
      {"1'234.50", "", ",1234.50"},
      {"(500,00)", "", ",-500.00"},
      {"500-", "", ",-500"},
      {"- 500", "", ",-500"},
      {"\xE2\x88\x92"
       "500",
       "", ",-500"},
      {"500 Cr.", "", ",-500"},
      {"500 DR", "", ",500"},
      {"\xE2\x82\xB9 500.25", "", ",500.25"},
      {"-$500.25", "", ",-500.25"},
      {"500 EUR", "", ",500"},
      {"Rs. 1,23,456.50 Cr", "", ",-123456.50"},
      // No amounts: they stay, and the warnings tell of them.
      {"(5)-", "", ",(5)-"},
      {"Dr 5 Cr", "", ",Dr 5 Cr"},
      {"-500 Dr", "", ",-500 Dr"},
      {"1.2.3", "", ",1.2.3"},
      {"about 5", "", ",about 5"},
      {"1 23,5", "", ",\"1 23,5\""},
      {undecidedAmount, "", ",1250", {"--decimal", "comma"}},
      {undecidedAmount, "", ",1.250", {"--decimal", "point"}},
      {"1", "03/31/2008", "2008-03-31,1"},
      {"1", "3/31/08 12:30 pm", "2008-03-31,1"},
      {"1", "20080331", "2008-03-31,1"},
      {"1", "2008-03-31T00:00:00Z", "2008-03-31,1"},
      {"1", "Mar 5, 2008", "\"Mar 5, 2008\",1"},
      {"1", "2008-03-31", "2008-03-31,1"},
      {"1", undecidedDate, "2008-03-04,1", {"--date-order", "mdy"}},
      {"1", undecidedDate, "03/04/2008,1", {"--date-order", "dmy"}},
      {"1", "08/03/31", "2008-03-31,1", {"--date-order", "ymd"}},
  };
  for (const auto& row : rows) {
    CAPTURE(row.bill);
    CAPTURE(row.date);
    CHECK(valueOf(row.bill, row.date, row.more) == row.want);
  }
  const std::string bothWays = "all dates read day first and month first, such as 03/04/2008 in ";
  CHECK(valueOf("1", undecidedDate, {}) ==
        bothWays + "line 2: say which it is with --date-order dmy, mdy or ymd");
  CHECK(contains(valueOf(undecidedAmount, "", {}), "such as 1.250 in line 2"));
  CHECK(contains(valueOf(undecidedAmount, "", {}), "--decimal point or comma"));
  for (const std::string wrong : {"dmy", "ymd"}) {
    CHECK(contains(valueOf("1", "03/31/2008", {"--date-order", wrong}), "03/31/2008 in line 2"));
  }
  CHECK(contains(valueOf("1", "06-Mar-04", {"--date-order", "ymd"}), "06-Mar-04 in line 2"));
  CHECK(contains(valueOf("12,50", "", {"--decimal", "point"}), "12,50 in line 2"));
  // Two records that contradict each other.
  CHECK(contains(valueOf("1;0\r\nC1;;R;31/03/2008;1", "03/31/2008", {}), "dates contradict"));
  CHECK(contains(valueOf("1.5;0\r\nC1;;R;;1,5", "", {}), "amounts contradict each other: 1.5"));
}

TEST_CASE(
    "values keep their quotes, commas and line breaks; what cannot be told apart is refused") {
  const Converted file =
      converted(semicolons("C001;\"5\"\" x; y\";\"a\r\nb\";;1;1\r\n\r\nC002;5\" z;p,q;;1;1"));
  CHECK(file.bytes == fileOf("C001,\"5\"\" x; y\",\"a\nb\",,1,1\r\nC002,\"5\"\" z\",\"p,q\",,1,1"));
  CHECK(file.said("commas") == "1");
  for (const std::string_view broken : {"C1;\"a;R;;1;1", "C1;\"a\" b;R;;1;1"}) {
    CHECK(contains(converted(semicolons(broken)).said("refused"), "line 2"));
  }
  for (const char* encoding : {"windows-1252", "ISO-8859-15"}) {
    CHECK(contains(
        converted(semicolons("C1;M\xC3\xBC;R;;1;1"), {"--encoding", encoding}).said("refused"),
        "the first in line 2, are UTF-8"));
  }
  CHECK(contains(converted("").said("refused"), "empty"));
  CHECK(contains(converted("PK\x03\x04").said("refused"), "workbook"));
  CHECK(contains(converted("x").ran.out, "\"status\""));
  const struct {
    std::vector<std::string> more;
    std::string_view says;
  } usage[] = {{{"--encoding", "utf-9"}, "there is no encoding \"utf-9\""},
               {{"--header-line", "9"}, "no line 9"},
               {{"--skip-lines", "0"}, "--skip-lines takes"},
               {{"--delimiter", "dot"}, "--delimiter"}};
  for (const auto& row : usage) {
    const Converted refused = converted(fileOf("C001,,,,1,1"), row.more);
    CHECK(refused.ran.status == 3);
    CHECK(contains(refused.ran.err, row.says));
  }
}

TEST_CASE(
    "names that windows-1252 has stand; those of another encoding are refused with its name") {
  // Of windows-1252, in UTF-8: one by one, and all of them in one file.
  const std::string western[] = {"Société Générale",
                                 "Noël",
                                 "Maçonnerie Hôtel Forêt",
                                 "Müller",
                                 "Weiß Ölmühle",
                                 "BÄCKEREI",
                                 "Peña y Ibáñez",
                                 "Logroño 1ª",
                                 "São João Conceição",
                                 "Åke Sjögren",
                                 "Søren Kjær",
                                 "Ærø",
                                 "Þór Guðmundsson",
                                 "Sigurður Þórðarson",
                                 "Hämäläinen",
                                 "Pöyhönen Öljy",
                                 "Niccolò",
                                 "Zoë",
                                 "Curaçao",
                                 "Pádraig Ó Briain",
                                 "O’Brien – Söhne",
                                 "„Adler“ “x” ‘y’",
                                 "100 € L´Hôtel",
                                 "Foo—Bar…",
                                 "Col·legi",
                                 "Fa. Škoda Žižek",
                                 "Crème Brûlée Señor",
                                 "£ 5 ½ 30 m² Nº 7",
                                 "Università",
                                 "Doðan Guðrún"};
  std::string all;
  for (const std::string& name : western) {
    const std::string line = "C001,\"" + CodePage::windows1252().encode(name) + "\",R,,1,1";
    const Converted file = converted(fileOf(line));
    CHECK_MESSAGE(file.ran.status == 0, file.ran.out);
    all.append(all.empty() ? "" : "\r\n").append(line);
  }
  CHECK(converted(fileOf(all)).ran.status == 0);
  const struct {
    std::string name, command;
  } rows[] = {
      {"Wa\xB3\xEAsa", "windows-1250"},  // Polish
      {"Zaj\xB9\x63", "windows-1250"},
      {"\xC7\xE0\xF0\xFF", "windows-1251"},  // Russian
      {"\x88\xA2\xA0\xAD", "IBM866"},
      {"\xC9\xD7\xC1\xCE\xCF\xD7 \xF0\xC5\xD4\xD2\xCF\xD7 \xCD\xCF\xD3\xCB\xD7\xC1", "KOI8-R"},
      {"\xC3\xE5\xF9\xF1\xE3\xDF\xEF\xF5", "windows-1253"},  // Greek
      {"Y\xFDld\xFDz", "windows-1254"},                      // Turkish
      {"Do\xF0\x61n", "windows-1254"},
      {"Dvo\xF8\xE1k", "windows-1250"},  // Czech
      {"\xAEi\xBEka", "ISO-8859-2"},
      {"Jan\xA0\x9F\x65k", "IBM852"},
      {"Erd\xF5s", "windows-1250"},  // Hungarian
      {"Kova\xE8", "windows-1250"},  // Croatian
      {"Popescu \xAAtefan Bra\xBAov", "windows-1250"},
      {"Jonaitien\xEB", "windows-1257"},  // Lithuanian
      {"B\xE7rzi\xF2\xF0", "windows-1257"},
      {"C\xA0\x64iz", "IBM850"},
      {"\x88\xAE\x9F \x8F \xD1\x80", "IBM866"},
      {"M\x81ller", "IBM850"},
      {"Schr\x94\x64\x65r", "IBM850"},
      {"B\x84\x63ker", "IBM850"},
      {"Caf\x82", "IBM850"},
      {"Jo\xC6o", "IBM850"},
      {"Mart\xA1nez", "IBM850"},
      {"Pe\xA4\x61", "IBM850"},
      {"Moli\x8Are", "IBM850"}};
  for (const auto& row : rows) {
    CAPTURE(row.command);
    RunnerWorld world;
    const Ran ran = world.run(
        {"preview", world.kind, world.folder.write("in", fileOf("C001," + row.name + ",R,,1,1"))});
    CHECK(ran.status == 2);
    CHECK_MESSAGE(contains(ran.out, "--encoding " + row.command), ran.out);
    CHECK(contains(ran.out, "--encoding windows-1252"));
  }
  CHECK(contains(converted(fileOf("C1,Dvo\xF8\xE1k,R,,1,1")).said("refused"),
                 "line 2 has \"Dvořák\" with --encoding windows-1250, "));
  CHECK(contains(converted(fileOf("C1,Dvo\xF8\xE1k,R,,1,1")).said("refused"),
                 "\"Dvoøák\" with --encoding windows-1252"));
  CHECK(converted(fileOf("C1,M\x81ller,R,,1,1"), {"--encoding", "windows-1252"}).ran.status == 0);
}

TEST_CASE("an import converts what the file itself decides, says so, and counts its lines") {
  RunnerWorld world;
  const std::string in =
      world.folder.write("in.txt",
                         "\xEF\xBB\xBF"
                         "Balances\n\n" +
                             semicolons("C001;Caf\xC3\xA9;R1;03/25/2008;1.000,50;5") +
                             "\nC999;x;R2;03/26/2008;(1,00);1-\nC002;B;R3;03/27/2008;2,00;2\n");
  const std::string rejects = world.folder.path("r.csv");
  const std::string page = world.folder.path("p.html");
  const Ran preview = world.run({"preview", world.kind, in});
  CHECK(contains(preview.out, "  dates: month first (03/25/2008 in line 4 and 2 more)\n"));
  const Ran ran = world.import(in, {"--json", "--rejects", rejects, "--report", page});
  CHECK_MESSAGE(ran.status == 1, ran.out);
  const Json report(ran.out);
  CHECK(report.outcomes() == "posted rejected posted");
  CHECK(report.at("records[1].line") == "6");
  CHECK(report.at("assumed[0].value") == "UTF-8");
  CHECK(report.at("warnings") == "[]");
  CHECK(world.ask("SELECT SUM(Amount) FROM CustomerDebitNote") == "1002.5");
  CHECK(contains(world.folder.read("p.html"), "03/25/2008 in line 4"));
  CHECK(contains(world.folder.read("r.csv"), "C999,x,R2,2008-03-26,-1.00,-1\r\n"));
  CHECK(contains(world.folder.read("r.csv.reasons.csv"), "2,6,rejected"));
  const Json kept(world.run({"report", "1", "--json"}).out);
  CHECK(kept.at("assumed") == report.at("assumed"));
  CHECK(kept.at("records[1].line") == "6");
  CHECK(kept.at("sha256") == report.at("sha256"));
  // The same records in the format of the screens.
  CHECK(world.run({"convert", world.kind, in, world.folder.path("same.csv")}).status == 0);
  CHECK(contains(world.import(world.folder.path("same.csv")).out, "posted by an earlier run"));
  CHECK(world.import(in, {"--raw", "--again"}).status == 2);
  const Json later(world.import(in, {"--json", "--again", "--from-line", "7"}).out);
  CHECK(later.outcomes() == "posted");
  // Read otherwise, the file has other records, and none to go on with.
  CHECK(world.import(in, {"--resume"}).status == 3);
  const Ran others = world.import(in, {"--resume", "--header-line", "4"});
  CHECK(contains(others.err, "which is read as 2 records now; give the same options"));
  const Ran undecided =
      world.importLines({"Customer ID;Date;Bill Amount;Balance", "C1;08-03-12;1;1"});
  CHECK(undecided.status == 2);
  CHECK(contains(undecided.out, "--date-order dmy, mdy or ymd"));
  CHECK(contains(undecided.out, " --date-order ymd`"));
}

TEST_CASE("a file of which nobody knows what is meant is refused, or left as the screens read it") {
  const std::string header(openingTitles);
  const auto with = [&](std::initializer_list<std::string_view> lines) {
    std::string text = header + "\r\n";
    for (const std::string_view line : lines) text.append(line).append("\r\n");
    return text;
  };
  const std::string late = "C002,B,R2,04/13/2007,100,100";
  const struct {
    std::string bytes, says;
    std::vector<std::string> more = {};
  } rows[] = {
      {semicolons("C001;A;R1;;500,50;0\r\n;;;;507,75;0"), "--skip-last-lines 1"},
      {semicolons("C001;A;R1;;500,50;0\r\nTotal;;;;507,75;0\r\nPage 1 of 1"),
       "the last 2 lines seem to be no record"},
      {"\xEF\xBB\xBF" + with({"C001,A,R1,,5,5",
                              "\xEF\xBB\xBF"
                              "C002,A,R2,,5,5"}),
       "two files put together"},
      // Rows that are not split as the others, while values are to be rewritten.
      {with({"C001,\"Smith\" & Co,R1,03/04/2007,5,5", late}), "that of line 2"},
      {with({"C001, \"Smith, John\",R1,03/04/2007,5,5", late}), "line 2: correct it"},
      {with({"C001,S \"A,B\" Co,R1,03/04/2007,5,5", late}), "line 2: correct it"},
      {with({late, "C001,A,R1,03/04/2007,5,5,x"}), "line 3: correct it"},
      // Columns that are mapped by number, by a title beyond ASCII, or twice.
      {"A;B;C;D;E\nC001;R1;03/04/2007;5;5\n",
       "read day first and month first",
       {"--map", "Date=#03"}},
      {"A;F\xE4llig\nC001;03/04/2007\n",
       "read day first and month first",
       {"--map", "Date=F\xC3\xA4llig"}},
      {"Customer ID;Date\nC1;03/04/2007\n",
       "read day first and month first",
       {"--map", "Reference=Date"}},
      // Titles below what may be records.
      {"C001;A;R1;13/03/2007;5;5\n" + semicolons("C1;;R;13/03/2007;5;5"),
       "line 1 above it may be a record"},
      {with({"C001,\xC3\xA9,R1,,5,5", "C002,\xE9,R2,,5,5"}), "say which it is with --encoding"},
      {"C001,,,31/03/2008,12.50,12.50\r\n" + with({"C2,,,30/03/2008,7,7"}),
       "line 1 above it may be"},
      {with({"C001,\xE9,R1,,5,5", "C002,\xC3\xA9,R2,,5,5"}), "but line 3 has letters in it"},
      {"Customer ID;Date;Bill Amount;Balance\nC1;31.03.2008;12,50;12,50;\n",
       "correct it, or remove it"},
      // A first record in the place of the titles.
      {"C001;A;31/03/2008;1,5\nC002;B;30/03/2008;1,5\n",
       "put a line of titles above it, or, if it does hold the titles, say so with --header-line 1",
       {"--map", "Customer ID=#1", "--map", "Balance=#4"}},
      {"C001;A;31/03/2008;1.5\n", "for \\\"1.5\\\" is no title", {"--map", "Balance=1.5"}},
      {"A;C001;x\r\nB;C02;x\r\n", "for \\\"C001\\\" looks", {"--map", "Reference=#1"}},
      {"A;C;x\r\nB;D;x\r\n", "for \\\"x\\\" looks like", {"--map", "Reference=#1"}},
      {with({"C001, \"x\", \"R1\",,5,5"}), "line 2, and the quotes would be part of it"},
      {"Kundennummer;Datum;Betrag;Saldo\nC1;13.03.2008;1,5;1,5\n",
       "\"Kundennummer\\\" looks like Customer ID"},
      {semicolons("C001;A;R1;;1,250;10,75"),
       "may be in front of thousands, such as 1,250 in line 2"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.bytes);
    const Converted file = converted(row.bytes, row.more);
    CHECK(file.ran.status == 2);
    CHECK_MESSAGE(contains(file.ran.out, row.says), file.ran.out);
  }
  const std::string undecided = with({"C001,A,R1,,\"5,250\",1", "C002,A,R1,,\"12,37\",1"});
  CHECK(converted(undecided).bytes == undecided);
  // Numbers of columns make no line the one with the titles.
  const std::string numbered = ",13/03/2007,1,1\r\nC002,14/03/2007,1,1\r\n";
  CHECK(converted("Code,When,1st,Balance\r\nC001" + numbered,
                  {"--map", "Date=#2", "--map", "Customer ID=#1", "--map", "Bill Amount=1st"})
            .bytes == "Customer ID,Date,Bill Amount,Balance\r\nC001" + numbered);
  // Neither does one value that reads as a title.
  const std::string named = "Code,,,When,1st,2nd\r\nC003,Date,,30/03/2008,1,1\r\n";
  CHECK(contains(converted(named, {"--map", "Date=#4"}).said("refused"),
                 "no column of the file is mapped to Customer ID"));
  CHECK(converted(semicolons("C1;;R;31/03/2008;Rs. 5,5;INR 5,5") + "  \r\n\"\"\r\n\x1A").bytes ==
        fileOf("C1,,R,31/03/2008,5.5,5.5"));
  CHECK(converted(semicolons("R1;A;20071231;31/03/2008;1;1"),
                  {"--map", "Reference=Date", "--map", "Date=Reference"})
            .ran.status == 0);
  CHECK(converted(with({late}), {}, "vendor-opening").ran.status == 2);
  const Converted given =
      converted(semicolons("C001;A;R1;03/04/2007;5;5"), {"--date-order", "mdy"});
  CHECK(contains(given.ran.out, "given with --date-order"));
  CHECK(converted(semicolons("C1;" + std::string(9999, 'x') + "\xC5\x82;R;;1;1")).ran.out.size() <
        2000);
}

TEST_CASE("a run is resumed only as it read the file before") {
  RunnerWorld world;
  world.kind = "vendor-opening";
  const std::string in = world.folder.write(
      "in.csv", crlf({"Vendor ID,Reference,Date,Bill Amount,Balance", "V01,R1,03/04/2007,1,1",
                      "V02,R2,31/02/2007x,2,2", "V03,R3,05/04/2007,3,3"}));
  const std::vector<std::string> options{"--accept", "all", "--date-order", "mdy"};
  CHECK(world.import(in, options).status == 5);
  const Ran otherwise = world.import(in, {"--accept", "all", "--resume"});
  CHECK(otherwise.status == 2);
  CHECK(contains(otherwise.out, "read dates or amounts of the file otherwise"));
  CHECK(world.ask("SELECT COUNT(*) FROM VendorDebitNote") == "1");
}
