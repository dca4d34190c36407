#include "apps/opnimp/warnings/row_check.h"

#include <algorithm>

#include "apps/opnimp/cli/printable.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

// Doubled quotes count twice and so change nothing.
bool endsInsideQuotes(std::string_view line) {
  return std::ranges::count(line, '"') % 2 != 0;
}

/// Rows of any length are shown by their beginning.
constexpr std::size_t longestRow = 500;

/// What the import takes from a row, field by field.
std::string valuesRead(const CheckedRecord& row) {
  std::string values;
  for (std::size_t field = 0; field < row.file.mapping.size(); ++field) {
    if (!row.file.isMapped(field)) continue;
    values.append(values.empty() ? "" : ", ").append(row.file.mapping[field].field);
    values.append(" ").append(quotedOrNothing(row.read(field)));
  }
  return values.empty() ? "no value at all" : cutTo(values, longestRow);
}

std::string textOf(const CheckedRecord& row) {
  return cutTo(CodePage::windows1252().decode(row.file.input.bytesOf(row.record)), longestRow);
}

/// Programs end all lines with as many commas as the longest one has: what stands there has no more
/// of a title than what stands behind all commas. Workbooks have notes beside their tables.
std::size_t namedWidth(const CheckedFile& file) {
  if (file.kind.opening == nullptr || file.input.conversion().isSheet) return file.columns;
  const std::vector<std::string> titles = file.input.titles();
  std::size_t width = titles.size();
  while (width > 0 && trim(titles[width - 1]).empty()) --width;
  return std::max(width, mappedWidth(file.mapping));
}

/// A part of an amount may be such a value; a remark is none.
bool hasNumberBehind(const CheckedRecord& row, std::size_t width) {
  for (std::size_t at = width; at < row.fields.size(); ++at) {
    if (exactNumber<double>(trim(previewCell(row.fields[at])))) return true;
  }
  return false;
}

bool isBlank(const CheckedRecord& row) {
  return std::ranges::all_of(row.fields, [](const auto& value) { return trim(value).empty(); });
}

}  // namespace

Misreading misreadRow(const CheckedRecord& row) {
  return {row.record, row.line(), {}, textOf(row), valuesRead(row)};
}

RowCheck::RowCheck(const CheckedFile& file)
    : input_(file.input), columns_(file.columns), named_(namedWidth(file)) {}

bool RowCheck::check(const CheckedRecord& row, std::vector<Warning>& warnings) {
  const auto [earlier, isNew] = lines_.emplace(input_.bytesOf(row.record), row.line());
  repeated_ = !isNew;
  if (repeated_ && !isBlank(row)) {
    addWarning(warnings, WarningId::EqualRows,
               Misreading{row.record,
                          row.line(),
                          {},
                          textOf(row),
                          "the row of line " + std::to_string(earlier->second) + " once more"});
  }
  const auto fault = faultOf(row);
  // Its values may stand where they belong all the same.
  const bool isLong = !fault && hasNumberBehind(row, named_);
  if (fault || isLong) addWarning(warnings, fault.value_or(WarningId::LongLines), misreadRow(row));
  return !fault;
}

// Broken quotes and NUL bytes change the number of fields, too, and explain it.
std::optional<WarningId> RowCheck::faultOf(const CheckedRecord& row) {
  if (const auto fault = quoteFault(row.record)) return fault;
  if (input_.bytesOf(row.record).find('\0') != std::string_view::npos) return WarningId::NulBytes;
  const std::size_t fields = countFields(input_.bytesOf(row.record));
  if (fields < columns_) return WarningId::ShortLines;
  return fields > columns_ ? std::optional(WarningId::LongLines) : std::nullopt;
}

// An open quote here and one more in the next record: most likely one value with a line break.
std::optional<WarningId> RowCheck::quoteFault(std::size_t record) {
  const bool isEnd = goesOn_;
  goesOn_ = false;
  if (!endsInsideQuotes(input_.bytesOf(record))) return std::nullopt;
  goesOn_ = !isEnd && record + 1 < input_.count() && endsInsideQuotes(input_.bytesOf(record + 1));
  return isEnd || goesOn_ ? WarningId::LineBreakInQuotes : WarningId::UnbalancedQuotes;
}

}  // namespace velk
