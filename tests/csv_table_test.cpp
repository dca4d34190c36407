#include "mapping/csv_table.h"

#include <random>

#include "shared/csv_text.h"
#include "tests/support/checks.h"

namespace velk {
namespace {

using namespace std::string_literals;

struct Table {
  Texts titles;
  std::vector<Texts> rows;
  std::size_t nonEmptyLines = 0;
  int unquoteFailures = 0;
  bool operator==(const Table&) const = default;
};

/// The slow and obvious way: lines, fields, quotes, one string each.
Table slowly(std::string_view text) {
  Table table;
  bool header = true;
  for (bool more = true; more; header = false) {
    const std::size_t end = text.find("\r\n");
    more = end != std::string_view::npos;
    const std::string_view line = text.substr(0, end);
    if (more) text.remove_prefix(end + 2);
    if (!line.empty()) ++table.nonEmptyLines;
    Texts fields = splitLine(line, QuotedComma::Drop);
    if (header) {
      table.titles = fields;
    } else if (!line.empty()) {
      fields.resize(table.titles.size());
      for (std::string& field : fields) {
        if (field == "\"") ++table.unquoteFailures;
        field.resize(field == "\"" ? 0 : unquoteInPlace(field.data(), field.size()));
      }
      table.rows.push_back(fields);
    }
  }
  return table;
}

Table quickly(std::string_view text) {
  Table table;
  const FileTable csv = readCsvTable(std::string(text), [&](const RuntimeError& error) {
    CHECK(error.is(ErrorNumber::InvalidProcedureCall));
    ++table.unquoteFailures;
  });
  table.titles = csv.titles;
  table.nonEmptyLines = csv.nonEmptyLines;
  table.rows.assign(csv.rows, Texts(csv.titles.size()));
  for (std::size_t column = 0; column < csv.columns.size(); ++column) {
    REQUIRE(csv.columns[column]->size() == csv.rows);
    for (std::size_t row = 0; row < csv.rows; ++row) {
      table.rows[row][column] = (*csv.columns[column])[row];
      CHECK(csv.columns[column]->isEmpty(row) == table.rows[row][column].empty());
    }
  }
  return table;
}

TEST_CASE("random texts give what the slow way gives") {
  const Texts pieces{",", ",", "\"", "\"", "\r\n", "\r\n", "\r",       "\n",   "\0"s,
                     "a", "b", " ",  "-",  "é",    "€",    "12345678", "\"\"", "a longer text"};
  std::mt19937 random(20080331);  // NOLINT: the same texts in every run
  for (int i = 0; i < 8000; ++i) {
    std::string text;
    for (auto n = random() % 40 + 1; n > 0; --n) text += pieces[random() % pieces.size()];
    CAPTURE(text);
    REQUIRE((quickly(text) == slowly(text)));
  }
}

TEST_CASE("texts that are empty or ask for too much memory are refused") {
  const auto errorFor = [](const std::string& text) {
    return errorOf([&] { readCsvTable(text, [](const RuntimeError&) {}); });
  };
  const std::string widest(maxColumns - 1, ',');
  CHECK(errorFor("") == 9);
  CHECK(errorFor(widest) == 0);
  CHECK(errorFor(widest + ",") == 7);
  CHECK(errorFor(std::string(maxColumns, '\0')) == 7);
  std::string shortLines = widest;
  for (std::size_t i = 0; i <= maxCells / maxColumns; ++i) shortLines += "\r\n1";
  CHECK(errorFor(shortLines) == 7);
}

}  // namespace
}  // namespace velk
