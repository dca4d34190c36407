// The comma-separated text functions on any bytes: no crash, and the preview's one-pass table
// equals what the line functions say line by line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "mapping/csv_table.h"
#include "shared/csv_text.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

std::vector<std::string_view> splitAtLineEnds(std::string_view text) {
  std::vector<std::string_view> lines;
  for (;;) {
    const std::size_t end = text.find("\r\n");
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 2);
  }
}

// The field as the preview shows it, and whether it could not be unquoted.
std::string unquoted(std::string field, std::size_t& failures) {
  try {
    field.resize(velk::unquoteInPlace(field.data(), field.size()));
  } catch (const velk::RuntimeError&) {
    ++failures;
    field.clear();
  }
  return field;
}

void checkRow(const velk::FileTable& table, std::size_t row, std::string_view line,
              std::size_t& failures) {
  const auto fields = velk::splitLine(line, velk::QuotedComma::Drop);
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    const std::string expected = column < fields.size() ? unquoted(fields[column], failures) : "";
    require((*table.columns[column])[row] == expected);
    require(table.columns[column]->isEmpty(row) == expected.empty());
  }
}

void checkTable(std::string_view text) {
  std::size_t reported = 0;
  const velk::FileTable table =
      velk::readCsvTable(std::string(text), [&](const velk::RuntimeError&) { ++reported; });
  const auto lines = splitAtLineEnds(text);
  require(table.titles == velk::splitLine(lines[0], velk::QuotedComma::Drop));
  std::size_t row = 0;
  std::size_t failures = 0;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (!lines[i].empty()) checkRow(table, row++, lines[i], failures);
  }
  require(row == table.rows && failures == reported);
  require(table.nonEmptyLines == row + (lines[0].empty() ? 0 : 1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const velk::CodePage& page = velk::CodePage::windows1252();
  const std::string text = page.decode(bytes);
  require(page.encode(text) == bytes);
  if (!text.empty()) checkTable(text);
  // Fields that keep their commas, joined, are the line again if it contained no NUL.
  if (text.find('\0') == std::string::npos) {
    std::string joined;
    for (const std::string& field : velk::splitLine(text, velk::QuotedComma::Keep)) {
      joined.append(",").append(field);
    }
    require(text.empty() || joined.substr(1) == text);
  }
  return 0;
}
