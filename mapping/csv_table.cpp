#include "mapping/csv_table.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "mapping/byte_scanner.h"
#include "shared/csv_text.h"

namespace velk {

namespace {

/// Reads a text in one pass and turns it, in place, into the fields that the columns share: a field
/// without its quotes is never longer than with them.
class CsvTableReader {
 public:
  CsvTableReader(std::string text, const std::function<void(const RuntimeError&)>& unquoteFailed)
      : text_(std::move(text)), unquoteFailed_(unquoteFailed) {
    const std::size_t length = text_.size();
    // The scanner reads whole blocks and stops at a NUL, so that it never leaves the text.
    text_.append(ByteScanner::blockSize, fieldEnd);
    end_ = text_.data() + length;
    // Most cells are longer than this. Memory that is never touched costs nothing, but growing step
    // by step makes a View a fifth slower.
    constexpr std::size_t shortCell = 8;
    offsets_.reserve(length / shortCell);
  }

  FileTable read() {
    char* stop = readTitles();
    ByteScanner scanner(stop);
    // Its first stop is the end of the title line, where the loop begins.
    scanner.next();
    while (stop != end_) {
      char* const line = stop + 2;
      // An empty line is no row: the scanner's next stop is its end.
      stop = isLineEnd(line) ? scanner.next() : readRow(line, scanner);
    }
    // Drops what addRow() made in advance, because the size tells the number of rows.
    offsets_.resize(table_.rows * table_.titles.size());
    table_.columns = TextColumn::of({table_.titles.size(), std::move(text_), std::move(offsets_)});
    return std::move(table_);
  }

 private:
  bool isLineEnd(const char* at) const { return at == end_ || (at[0] == '\r' && at[1] == '\n'); }

  /// Answers where the first line ends.
  char* readTitles() {
    const std::string_view line = std::string_view(text_).substr(
        0, std::min(text_.find("\r\n"), static_cast<std::size_t>(end_ - text_.data())));
    // Counted before they are split, and with the commas in quotes: it is a limit on memory.
    const auto fieldEnds = std::ranges::count(line, ',') + std::ranges::count(line, fieldEnd);
    if (static_cast<std::size_t>(fieldEnds) >= maxColumns) {
      throw RuntimeError(ErrorNumber::OutOfMemory);
    }
    table_.titles = splitLine(line, QuotedComma::Drop);
    if (!line.empty()) ++table_.nonEmptyLines;
    return text_.data() + line.size();
  }

  /// Answers where the row's line ends; there the scanner stopped last.
  char* readRow(char* start, ByteScanner& scanner) {
    std::uint32_t* cell = addRow();
    std::uint32_t* const cellsEnd = cell + table_.titles.size();
    bool quoted = false;
    for (;;) {
      char* at = scanner.next();
      bool lineEnds = false;
      if (*at != ',' || quoted) {  // seldom: asking once for all saves 2 % of a View
        if (*at == '"' || quoted) {
          at = readQuotedField(start, cell != cellsEnd, quoted);
          scanner.seek(at);
          scanner.next();
        }
        lineEnds = isLineEnd(at);
        // A carriage return alone is a character of the field.
        if (*at == '\r' && !lineEnds) continue;
      }
      *at = fieldEnd;
      // Cells beyond the titles are not shown.
      if (cell != cellsEnd) *cell++ = offsetOf(start);
      start = at + 1;
      if (lineEnds) return at;
    }
  }

  /// A field with a quote in it, byte by byte; answers where it stops. A NUL ends a field even
  /// inside quotes, and the next field is inside them then.
  char* readQuotedField(char* const start, bool shown, bool& quoted) {
    char* to = start;
    char* at = start;
    for (; !isLineEnd(at) && *at != fieldEnd && (quoted || *at != ','); ++at) {
      if (*at == '"') quoted = !quoted;
      // A comma that comes here is inside quotes, and the preview drops those.
      if (*at != ',') *to++ = *at;
    }
    if (shown) to = unquote(start, to);
    if (to != at) *to = fieldEnd;
    return at;
  }

  /// A row of empty cells: the text's end is an empty field, too.
  std::uint32_t* addRow() {
    constexpr std::size_t block = 16384;  // made at once, so that a row costs next to nothing
    const std::size_t used = table_.rows * table_.titles.size();
    const std::size_t wanted = used + table_.titles.size();
    if (wanted > maxCells) throw RuntimeError(ErrorNumber::OutOfMemory);
    if (wanted > offsets_.size()) offsets_.resize(wanted + block, offsetOf(end_));
    ++table_.rows;
    ++table_.nonEmptyLines;
    return offsets_.data() + used;
  }

  std::uint32_t offsetOf(const char* at) const {
    return static_cast<std::uint32_t>(at - text_.data());
  }

  char* unquote(char* field, const char* end) {
    try {
      return field + unquoteInPlace(field, static_cast<std::size_t>(end - field));
    } catch (const RuntimeError& error) {
      unquoteFailed_(error);
      // An empty field, as UnquoteField answers.
      return field;
    }
  }

  std::string text_;
  char* end_;  // NULs follow it, so that a look at the next byte needs no check
  const std::function<void(const RuntimeError&)>& unquoteFailed_;
  std::vector<std::uint32_t> offsets_;
  FileTable table_;
};

}  // namespace

FileTable readCsvTable(std::string text,
                       const std::function<void(const RuntimeError&)>& unquoteFailed) {
  // There is no first line to take the titles from.
  if (text.empty()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
  return refusingWithoutMemory(
      [&] { return CsvTableReader(std::move(text), unquoteFailed).read(); });
}

}  // namespace velk
