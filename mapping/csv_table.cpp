#include "mapping/csv_table.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "base/growing_buffer.h"
#include "mapping/byte_scanner.h"
#include "shared/csv_text.h"

namespace velk {

namespace {

static_assert(FileText::padding >= ByteScanner::blockSize);

// The end of the line that starts at `from`: its carriage return, or the end of the text.
char* lineEnd(char* from, char* end) {
  for (char* at = from; at < end; ++at) {
    at = static_cast<char*>(std::memchr(at, '\r', static_cast<std::size_t>(end - at)));
    if (at == nullptr) return end;
    if (at[1] == '\n') return at;
  }
  return end;
}

class Builder {
 public:
  Builder(FileText text, const std::function<void(const RuntimeError&)>& unquoteFailed)
      : text_(std::move(text)),
        end_(text_.data() + text_.size()),
        scanner_(text_.data()),
        unquoteFailed_(unquoteFailed) {}

  FileTable build() {
    char* stop = readTitles();
    scanner_.seek(stop);
    scanner_.next();
    while (stop != end_) {
      char* const line = stop + 2;
      stop = isLineStop(line) ? scanner_.next() : readRow(line);
    }
    shareColumns();
    return std::move(table_);
  }

 private:
  // Readers of a line return where it stops.
  char* readTitles() {
    char* const line = text_.data();
    char* const stop = lineEnd(line, end_);
    const auto columnEnds = std::count(line, stop, ',') + std::count(line, stop, fieldEnd);
    if (static_cast<std::size_t>(columnEnds) >= maxColumns) {
      throw RuntimeError(ErrorNumber::OutOfMemory);
    }
    table_.titles = splitLine({line, stop}, QuotedComma::Drop);
    if (line != stop) ++table_.nonEmptyLines;
    return stop;
  }

  bool isLineStop(const char* at) const { return at == end_ || (at[0] == '\r' && at[1] == '\n'); }

  // The scanner is copied because a store through a char pointer could change it, for all that the
  // compiler knows.
  char* readRow(char* const line) {
    ++table_.nonEmptyLines;
    std::uint32_t* cell = addRow();
    std::uint32_t* const cellsEnd = cell + table_.titles.size();
    ByteScanner scanner = scanner_;
    bool quoted = false;
    char* start = line;
    const auto endField = [&](char* at) {
      *at = fieldEnd;
      if (cell != cellsEnd) *cell++ = offsetOf(start);
      start = at + 1;
    };
    for (;;) {
      char* at = scanner.next();
      if (*at == ',' && !quoted) {  // nearly always
        endField(at);
        continue;
      }
      if (*at == '"' || quoted) {
        at = readQuotedField(start, cell != cellsEnd, quoted);
        scanner.seek(at);
        scanner.next();
      }
      const bool stops = isLineStop(at);
      if (*at == '\r' && !stops) continue;
      endField(at);
      if (!stops) continue;
      std::fill(cell, cellsEnd, offsetOf(at));
      scanner_ = scanner;
      return at;
    }
  }

  // A field with a quote in it, byte by byte; returns where it stops. A NUL ends a field even
  // inside quotes, and the next field is inside them then.
  char* readQuotedField(char* const start, bool shown, bool& quoted) {
    char* to = start;
    char* at = start;
    for (; !isLineStop(at) && *at != fieldEnd && (quoted || *at != ','); ++at) {
      if (*at == '"') quoted = !quoted;
      if (*at != ',') *to++ = *at;
    }
    if (shown) to = unquote(start, to);
    if (to != at) *to = fieldEnd;
    return at;
  }

  std::uint32_t* addRow() {
    const std::size_t stride = table_.titles.size();
    const std::size_t used = table_.rows * stride;
    if (used + stride > maxCells) throw RuntimeError(ErrorNumber::OutOfMemory);
    if (used + stride > offsets_.capacity()) {
      offsets_.reserve(std::max(used + stride, 2 * offsets_.capacity()));
    }
    ++table_.rows;
    return offsets_.data() + used;
  }

  std::uint32_t offsetOf(const char* at) const {
    return static_cast<std::uint32_t>(at - text_.view().data());
  }

  char* unquote(char* field, const char* end) {
    try {
      return field + unquoteInPlace(field, static_cast<std::size_t>(end - field));
    } catch (const RuntimeError& error) {
      unquoteFailed_(error);
      return field;
    }
  }

  void shareColumns() {
    const std::size_t stride = table_.titles.size();
    const CellOffsets cells{offsets_.release(), table_.rows, stride};
    const std::shared_ptr<const char[]> buffer = std::move(text_).release();
    for (std::size_t column = 0; column < stride; ++column) {
      table_.columns.push_back(std::make_shared<const TextColumn>(buffer, cells, column));
    }
  }

  FileText text_;
  char* const end_;
  ByteScanner scanner_;
  const std::function<void(const RuntimeError&)>& unquoteFailed_;
  GrowingBuffer<std::uint32_t> offsets_;
  FileTable table_;
};

}  // namespace

FileTable readCsvTable(FileText text,
                       const std::function<void(const RuntimeError&)>& unquoteFailed) {
  if (text.size() == 0) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
  return Builder(std::move(text), unquoteFailed).build();
}

}  // namespace velk
