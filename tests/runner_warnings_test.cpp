// Warnings about files, and the texts that reports are made of.
#include <doctest/doctest.h>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/run/database_choice.h"
#include "apps/opnimp/warnings/amount_check.h"
#include "apps/opnimp/warnings/find_warnings.h"

using namespace velk;

namespace {

/// The warnings of a file whose columns are customer, date, bill and balance.
std::vector<Warning> warningsOf(std::string bytes) {
  const std::vector<FieldMapping> mapping{{"Customer ID", 0, ""}, {"Name", {}, ""},
                                          {"Reference", {}, ""},  {"Date", 1, ""},
                                          {"Bill Amount", 2, ""}, {"Balance", 3, ""}};
  return findWarnings(CsvRecords(std::move(bytes)), *findKind("customer-opening"), mapping, 2008);
}

}  // namespace

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
      {"", {"", "0", " -12.50 ", "1.5E3", "1,250.00", "1,15,300.00", "-1,250"}},
      {"amount-decimal-comma", {"12,50", "1.234,50", "1,2345", ",250"}},
      {"amount-too-large", {"1e999"}},
      {"amount-in-parentheses", {"(500)", "(1,250.00)"}},
      {"amount-trailing-minus", {"500-"}},
      {"amount-currency", {"$500", "\u20AC 500", "Rs. 1,250"}},
      {"amount-blank-inside", {"1 234"}},
      {"amount-not-a-number", {"abc", "-", "Smith, J"}},
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
