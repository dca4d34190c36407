// Warnings about files, and the texts that reports are made of.
#include <doctest/doctest.h>

#include <algorithm>
#include <array>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/run/database_choice.h"
#include "apps/opnimp/warnings/amount_check.h"
#include "apps/opnimp/warnings/find_warnings.h"
#include "tests/support/runner.h"

using namespace velk;

namespace {

/// The warnings of a file whose columns are customer, date, bill and balance.
std::vector<Warning> warningsOf(std::string bytes) {
  const std::vector<FieldMapping> mapping{{"Customer ID", 0, ""}, {"Name", {}, ""},
                                          {"Reference", {}, ""},  {"Date", 1, ""},
                                          {"Bill Amount", 2, ""}, {"Balance", 3, ""}};
  return findWarnings(CsvRecords(std::move(bytes)), *findKind("customer-opening"), mapping, 2008);
}

/// The codes of the harmful ones of a file whose titles map by themselves.
std::string harmful(std::string_view titles, std::initializer_list<std::string_view> lines,
                    std::string_view kindName = "customer-opening") {
  const ImportKind& kind = *findKind(kindName);
  const CsvRecords input(crlf({titles}) + crlf(lines));
  const std::vector<std::string> found = input.titles();
  std::vector<FieldMapping> mapping;
  for (const FieldTitle& field : kind.titles) {
    const auto at = std::ranges::find(found, field.title);
    mapping.push_back({std::string(field.title), {}, std::string(field.title)});
    if (at != found.end()) mapping.back().column = static_cast<std::size_t>(at - found.begin());
  }
  std::string codes;
  for (const Warning& warning : findWarnings(input, kind, mapping, 2008)) {
    if (warning.harmful()) codes.append(codes.empty() ? "" : " ").append(warning.code());
  }
  return codes;
}

constexpr std::string_view amounts = "Customer ID,Date,Reference,Bill Amount,Balance";

}  // namespace

TEST_CASE("amounts that commas have split are told from small ones") {
  const struct {
    std::string_view more;               // titles
    std::vector<std::string_view> rows;  // behind the reference, which differs
    std::string_view code;
  } files[] = {
      // Another value says that it was split.
      {",Note", {"500,000.00,300"}, "split-amount"},
      {",Note", {"500,050,300"}, "split-amount"},
      {",Note", {"12,00,7"}, "split-amount"},
      {",Note", {"450.00,12,000.00"}, "split-amount"},
      {",A,B", {"500,300.00,500,300.00"}, "split-amount"},
      {",Note", {"100,250.00,x"}, "split-amount"},
      {",Note", {"1500.00,1,250.00", "\"2,450.00\",0.00,"}, "split-amount"},
      {",A,B", {"500,300,500,300", "9,8,ok,ok"}, "split-amount"},
      {",,", {"500,300,500,300.00"}, "long-lines"},
      {",", {"1,1,5"}, "long-lines"},
      // Nothing does.
      {",,", {"500,300, ,\"\""}, ""},
      {",", {"500,300,ok"}, ""},
      {"", {"900,120.00", "1500.50,300.50"}, ""},
      {",Note", {"500,300,007"}, ""},
      {",Note", {"500,300,120.50", "1500,7.25,"}, ""},
      {",A,B", {"500,300,12,204", "9,8,12,ok"}, ""},
      {",Note", {"500,\"300.00\",x", "450.00,7.25,"}, ""},
      {",Note", {"500,300.00,x", "450,7.25,"}, ""},
      {",Note", {"500,300,412", "9,8,ok"}, ""},
      {",Note", {"100,250,x"}, ""},
  };
  for (const auto& file : files) {
    CAPTURE(file.rows.front());
    std::vector<std::string> rows;
    for (const std::string_view row : file.rows) {
      rows.push_back("1,,R" + std::to_string(rows.size()) + "," + std::string(row));
    }
    rows.resize(2);
    CHECK(harmful(std::string(amounts) + std::string(file.more), {rows[0], rows[1]}) == file.code);
  }
}

TEST_CASE("columns that no field is mapped to are known by their titles and by their values") {
  // Each row ends in a bill and a balance, and each file has three.
  const struct {
    std::string_view title;
    std::array<std::string_view, 3> values;
    std::string_view lost;  ///< of these fields those that are not mapped when it is harmful
  } rows[] = {
      {"Dt", {"13/03/2008", "n/a", "soon"}, "D"},
      {"Dt.", {"39520", "", ""}, "D"},
      {"Vch Dt", {"x", "", ""}, "D"},
      {"When", {"13/03/2008", "n/a", "15/03/2008"}, "D"},
      {"When", {"20080313", "20080314", ""}, "D"},
      {"", {"39520", "39521", "39601"}, "D"},
      {"When", {"39520", "39520", "39520"}, ""},
      {"When", {"39520", "39521", "120"}, ""},
      {"Turnover", {"39500", "38000", "39120"}, ""},
      {"Zip", {"39520", "39521", "39601"}, ""},
      {"When", {"13/03/2008", "n/a", "soon"}, ""},
      {"Inv", {"1", "2", "3"}, "R"},
      {"Doc#", {"1", "", ""}, "R"},
      {"Trans. ID", {"x", "", ""}, "R"},
      {"Bill", {"7", "8", "9"}, "R"},
      {"Beleg", {"7", "8", "9"}, "R"},
      {"", {"INV-0001", "INV-0002", ""}, "R"},
      {"Particulars", {"123/08-09", "124/08-09", "125/08-09"}, "R"},
      {"No.", {"SI 0712", "SI 0713", "SI 0713"}, ""},
      {"No.", {"1", "2", "3"}, ""},
      {"Route", {"R101", "R102", "R103"}, ""},
      {"Reachable", {"020-2612345", "9849012345", "+91 20 26123"}, ""},
      {"Paid", {"1,250.00", "300", "Rs. 120"}, ""},
      {"Street", {"12 Fort Road 420", "114 Main St", "7 Mill Rd 101"}, ""},
      {"Site", {"a123@example.com", "b124@example.com", "c125@example.com"}, ""},
      {"Type", {"CN", "Invoice", "Dr"}, "DRS"},
      {"Soll/Haben", {"", "", ""}, ""},
      {"S/H-Kennzeichen", {"S", "H", "S"}, "DRS"},
      {"Segno", {"D", "A", "D"}, "DRS"},
      {"Belegart", {"Rechnung", "Gutschrift", ""}, "DRS"},
      {"Grade", {"A", "B", "C"}, ""},
      {"Grade", {"A", "D", "D"}, ""},
      {"Route", {"S", "H", "H"}, ""},
      {"X", {"S", "H", "H"}, "DRS"},
      {"Art", {"Zahlung", "Rechnung", ""}, "DRS"},
      {"Nature", {"Credit", "", ""}, "DRS"},
      {"Sale Type", {"Credit", "Credit", ""}, ""},
      {"Sale Type", {"Credit", "Debit", ""}, "DRS"},
      {"Type", {"Invoice", "Bill", "Dr"}, ""},
      {"Type", {"CN", "Retail", ""}, ""},
  };
  for (const auto& row : rows) {
    for (const char field : {'D', 'R', 'S'}) {
      CAPTURE(row.title);
      CAPTURE(row.values[0]);
      CAPTURE(field);
      const std::string titles = std::string(field == 'D' ? "" : "Date,") +
                                 (field == 'R' ? "" : "Reference,") + std::string(row.title) +
                                 ",Customer ID,Bill Amount,Balance";
      std::vector<std::string> lines;
      for (const std::string_view value : row.values) {
        const std::string number = std::to_string(lines.size());
        std::string line = field == 'D' ? "" : "13/03/2008,";
        line.append(field == 'R' ? "" : "R" + number + ",").append("\"").append(value);
        lines.push_back(line + "\"," + number + ",9,9");
      }
      const bool isLost = contains(row.lost, std::string_view(&field, 1));
      CHECK(harmful(titles, {lines[0], lines[1], lines[2]}) == (isLost ? "column-not-mapped" : ""));
    }
  }
  // The sign says it already, or what a vendor is owed counts as above zero.
  constexpr std::string_view signs = "Date,Reference,Type,Customer ID,Bill Amount,Balance";
  CHECK(harmful(signs, {",1,CN,1,-9,-9", ",2,INV,1,9,9"}).empty());
  constexpr std::string_view owed = "Date,Reference,Type,Vendor ID,Bill Amount,Balance";
  CHECK(harmful(owed, {",1,Cr,1,9,9", ",2,Cr,1,9,9"}, "vendor-opening").empty());
  CHECK(harmful(owed, {",1,Cr,1,9,9", ",2,Dr,1,9,9"}, "vendor-opening") == "column-not-mapped");
}

TEST_CASE("warnings by file") {
  const std::string h = "c,d,b,l\r\n";
  const struct {
    std::string bytes;
    std::string_view codes;
  } rows[] = {
      {h + "1,13/03/2008,1,1\r\n", ""},
      {h + "1,,1,1", ""},
      {h, "no-records"},
      {h + "1,,1,1\n2,,1,1\r\n", "bare-line-feeds long-lines"},
      {h + "1\r,,1,1\r\n", "bare-carriage-returns"},
      {"\xEF\xBB\xBF" + h + "1,,1,1\r\n", "byte-order-mark"},
      {h + "\xC3\xA9,,1,1\r\n", "utf-8"},
      {h + "\xE9,,1,1\r\n", ""},
      {h + "\xE9\x81,,1,1\r\n", "undefined-bytes unseen-in-code"},
      {h + "1\x01,,1,1\r\n", "unseen-in-code"},
      {h + "1\xA0,,1,1\r\n", "unseen-in-code"},
      {h + "1\xAD,,1,1\r\n", "unseen-in-code"},
      {h + "1\xA1\xB9\t,,1,1\r\n", ""},
      {"c;d;b;l\r\n1;;1;1\r\n", "semicolon-separated"},
      {"c\td\tb\tl\r\n1\t\t1\t1\r\n", "tab-separated"},
      {"\"c\",d,b,l\r\n1,,1,1\r\n", "quoted-titles"},
      {"c,D ,d,l\r\n1,,1,1\r\n", "duplicate-titles"},
      {"c,d, ,l\r\n1,,1,1\r\n", "blank-titles"},
      {h + "1,,1\r\n", "short-lines"},
      {h + "1,,1,1,\r\n", "long-lines"},
      {h + "\"1\r\n2\",,1,1\r\n", "line-break-in-quotes"},
      {h + "1,,1,\"1\r\n", "unbalanced-quotes"},
      {h + "\"1,2\",,1,1\r\n", "quoted-commas"},
      {h + std::string("1\0,,1,1\r\n", 9), "nul-bytes"},
      {h + "1,03/04/2008,1,1\r\n", "date-reads-both-ways"},
      {h + "1,03/03/2008,1,1\r\n", ""},
      {h + "1,03/25/2008,1,1\r\n", "date-month-first"},
      {h + "1,never,1,1\r\n", ""},
      {h + "1,,\"1.234,50\",\"12,50\"\r\n", "amount-decimal-comma"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.bytes);
    std::string codes;
    for (const Warning& warning : warningsOf(row.bytes)) {
      codes.append(codes.empty() ? "" : " ").append(warning.code());
    }
    CHECK(codes == row.codes);
  }
}

TEST_CASE("amounts as people write them") {
  const struct {
    std::string_view code;
    std::vector<std::string_view> cells;
  } rows[] = {
      {"", {"", "0", " -12.50 ", "1,250.00", "1,15,300.00", "-1,250"}},
      {"amount-decimal-comma", {"12,50", "1.234,50", "1,2345", ",250"}},
      {"amount-too-large", {"1e999"}},
      {"amount-in-parentheses", {"(500)", "(1,250.00)"}},
      {"amount-trailing-minus", {"500-"}},
      {"amount-currency", {"$500", "&H1F", "\u20AC 500", "Rs. 1,250"}},
      {"amount-blank-inside", {"1 234"}},
      {"amount-not-a-number", {"abc", "-", "Smith, J"}},
      {"amount-exponent", {"500D2", "1E3", "-1.5e+2"}},
      {"amount-partly-read", {"500Dr", "1.234.567"}},
  };
  for (const auto& row : rows) {
    for (const std::string_view cell : row.cells) {
      CAPTURE(cell);
      const auto found = checkAmount(cell);
      CHECK((found ? warningText(*found).code : "") == row.code);
    }
  }
}

TEST_CASE("passwords are masked wherever they stand") {
  const struct {
    std::string_view text, masked;
  } rows[] = {
      {"DSN=a;PWD=x;UID=b", "DSN=a;PWD=***;UID=b"},
      {"DSN=a; password = x;", "DSN=a; password =***;"},
      {"PWD={a;b}}c};DSN=a", "PWD=***;DSN=a"},
      {"PWD={never closed;DSN=a", "PWD=***"},
      {"PWD=a=b", "PWD=***"},
      {"DSN=a;PWD=", "DSN=a;PWD=***"},
      {"DSN=a;trailing", "DSN=a;trailing"},
      {"PWD=ab;cd;UID=b", "PWD=***;UID=b"},
      {"PWD=ab;c=d;e; Server = s;x=y", "PWD=***; Server = s;x=y"},
      {"PWD={a}b;c;DSN=a", "PWD=***;DSN=a"},
      {"DSN=a;TLSKEYPWD=x;UID=b", "DSN=a;TLSKEYPWD=***;UID=b"},
      {"KeystoreSecret={x;y};DSN=a", "KeystoreSecret=***;DSN=a"},
      {"pqopt={sslpassword=x};DSN=a", "pqopt=***;DSN=a"},
      {"PASSWORD2=x;Access Token = y;DSN=a", "PASSWORD2=***;DSN=a"},
      {"ClientCertificate=file:a,password:x", "ClientCertificate=***"},
      {"cannot open the file Driver=x;PWD=y", "cannot open the file Driver=x;PWD=***"},
      {"there is no file PWD=y;DSN=a", "there is no file PWD=***;DSN=a"},
  };
  for (const auto& row : rows) CHECK(maskPasswords(row.text) == row.masked);
}

TEST_CASE("texts for a terminal") {
  CHECK(printable("caf\xC3\xA9\x1B\x7F\xC2\x9B") == "caf\xC3\xA9\\x1B\\x7F\\x9B");
  CHECK(printable(toUtf8(u"a\u202E\u2066\uFEFF")) == "a\\u202E\\u2066\\uFEFF");
  CHECK(printable("a\xFF") == "a\xEF\xBF\xBD");
  CHECK(printableLines("a\r\nb\n") == "a\nb\\x0A");
  CHECK(cutTo("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", 4) == "\xC3\xA9...");
  CHECK(cutTo("abcd", 4) == "abcd");
  CHECK(padLeft("\xC3\xA9", 3) == "  \xC3\xA9");
}
