#include "mapping/csv_table.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

#include "mapping/byte_scanner.h"
#include "platform/growing_buffer.h"
#include "shared/csv_text.h"

namespace velk {

namespace {

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

  CsvTable build() {
    char* stop = readTitles();
    while (stop != end_) {
      char* const line = stop + 2;
      scanner_.seek(line);
      const bool empty = line == end_ || (line[0] == '\r' && line[1] == '\n');
      stop = empty ? line : readRow(line);
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

  char* readRow(char* const line) {
    ++table_.nonEmptyLines;
    std::uint32_t* const first = addRow();
    std::uint32_t* const end = first + table_.titles.size();
    std::uint32_t* cell = first;
    const char* start = line;
    for (;;) {
      char* const at = scanner_.next();
      const char c = *at;
      const bool stops = at == end_ || (c == '\r' && at[1] == '\n');
      if (c == '"') return readQuotedRow(line, {first, end});
      if (c != ',' && c != fieldEnd && !stops) continue;
      *at = fieldEnd;
      if (cell != end) *cell++ = offsetOf(start);
      start = at + 1;
      if (!stops) continue;
      std::fill(cell, end, offsetOf(at));
      return at;
    }
  }

  // Commas of the line's start may have become field ends already: they end fields all the same.
  char* readQuotedRow(char* line, std::span<std::uint32_t> cells) {
    char* const lineStop = lineEnd(line, end_);
    char* const stop =
        line + markFields(line, static_cast<std::size_t>(lineStop - line), QuotedComma::Drop);
    *stop = fieldEnd;
    for (char* start = line; start <= stop && !cells.empty(); cells = cells.subspan(1)) {
      char* const next = start + std::strlen(start) + 1;
      unquote(start, static_cast<std::size_t>(next - start) - 1);
      cells.front() = offsetOf(start);
      start = next;
    }
    std::ranges::fill(cells, offsetOf(stop));
    return lineStop;
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

  void unquote(char* field, std::size_t length) {
    try {
      field[unquoteInPlace(field, length)] = fieldEnd;
    } catch (const RuntimeError& error) {
      unquoteFailed_(error);
      *field = fieldEnd;
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
  CsvTable table_;
};

}  // namespace

CsvTable readCsvTable(FileText text,
                      const std::function<void(const RuntimeError&)>& unquoteFailed) {
  if (text.size() == 0) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
  return Builder(std::move(text), unquoteFailed).build();
}

}  // namespace velk
