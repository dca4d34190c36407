#include "apps/opnimp/records/csv_records.h"

#include <algorithm>
#include <utility>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/file_bytes.h"
#include "base/text.h"

namespace velk {

// Lines count by line feeds, as in an editor, while only a pair of carriage return and line feed
// ends a record: one with bare line feeds takes several lines.
CsvRecords::CsvRecords(std::string fileBytes, Conversion conversion)
    : bytes_(std::move(fileBytes)), conversion_(std::move(conversion)) {
  if (conversion_.bytes) {
    fileBytes_ = std::exchange(bytes_, std::move(*conversion_.bytes));
    conversion_.bytes.reset();
  }
  const std::vector<std::size_t> lines = std::move(conversion_.lines);
  std::size_t line = 1;
  for (std::size_t start = 0, row = 0; start < bytes_.size(); ++row) {
    const std::size_t end = std::min(bytes_.find(csvLineEnd, start), bytes_.size());
    const RecordPlace place{start, end - start, row < lines.size() ? lines[row] : line};
    // The first line is the header even if it is empty; any other empty line is no record.
    if (start == 0) {
      header_ = place;
    } else if (place.length != 0) {
      records_.push_back(place);
    }
    const std::size_t next = std::min(end + csvLineEnd.size(), bytes_.size());
    line += static_cast<std::size_t>(std::count(bytes_.data() + start, bytes_.data() + next, '\n'));
    start = next;
  }
}

std::size_t CsvRecords::longestLine() const {
  std::size_t longest = header_.length;
  for (const RecordPlace& place : records_) longest = std::max(longest, place.length);
  return longest;
}

std::size_t CsvRecords::lineAt(std::size_t offset) const {
  // The last place that begins at the offset or before it.
  const auto after = std::ranges::upper_bound(records_, offset, {}, &RecordPlace::offset);
  const RecordPlace& place = after == records_.begin() ? header_ : *std::prev(after);
  const auto before = std::string_view(bytes_).substr(place.offset, offset - place.offset);
  return place.line + static_cast<std::size_t>(std::ranges::count(before, '\n'));
}

std::vector<std::string> CsvRecords::titles() const {
  return splitLine(CodePage::windows1252().decode(header()), QuotedComma::Drop);
}

std::vector<std::string> CsvRecords::fields(std::size_t record, std::size_t most) const {
  std::vector<std::string> fields = split(record, QuotedComma::Drop, most);
  for (std::string& field : fields) {
    if (field.starts_with('"')) field = withoutQuotes(std::move(field));
  }
  return fields;
}

// No more than asked for are made: a hostile line may have millions.
std::vector<std::string> CsvRecords::split(std::size_t record, QuotedComma quotedComma,
                                           std::size_t most) const {
  std::string line = CodePage::windows1252().decode(bytesOf(record));
  line.resize(markFields(line.data(), line.size(), quotedComma));
  std::vector<std::string> fields;
  constexpr std::size_t usual = 8;
  fields.reserve(std::min(most, usual));
  for (std::size_t start = 0; fields.size() < most && start <= line.size();) {
    const std::size_t end = std::min(line.find(fieldEnd, start), line.size());
    fields.push_back(line.substr(start, end - start));
    start = end + 1;  // a mark at the end of the line makes an empty last field
  }
  return fields;
}

// Columns are counted as the record reader does, for which a bare carriage return ends the line,
// too.
std::string CsvRecords::refusal(const ImportKind& kind) const {
  if (bytes_.empty()) return "the file is empty; its first line must hold column titles";
  if (isWorkbook()) {
    return "the file is a workbook: import it without --raw";
  }
  const std::size_t columns = countFields(header().substr(0, header().find('\r')));
  if (kind.columns == 0 || columns == kind.columns) return {};
  return "the first line has " + counted(columns, "column", "columns") + "; a file of the kind " +
         std::string(kind.name) + " must have exactly " + std::to_string(kind.columns);
}

// The bytes are copied as they are: nothing that the user did not correct may change.
void CsvRecords::write(FileSystem& files, std::string_view path,
                       std::span<const std::size_t> records) const {
  std::string text = std::string(header()).append(csvLineEnd);
  for (const std::size_t record : records) text.append(bytesOf(record)).append(csvLineEnd);
  writeFile(files, path, text);
}

}  // namespace velk
