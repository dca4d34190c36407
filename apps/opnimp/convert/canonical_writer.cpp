#include "apps/opnimp/convert/canonical_writer.h"

#include <algorithm>

#include "base/text.h"

namespace velk {

namespace {

constexpr std::string_view lineEnd = "\r\n";

bool isHeld(std::string_view text) {
  std::string room;
  return isAscii(text) || CodePage::windows1252().appendEncoded(room, text) == 0;
}

}  // namespace

// The screens take a title with its quotes, and so do not know it.
void CanonicalWriter::writeTitles(const RowReader& rows, std::span<const std::string> renamed) {
  beginRow(rows);
  for (std::size_t cell = 0; cell < rows.cells().size(); ++cell) {
    if (cell > 0) bytes_ += ',';
    const std::string_view written = rows.cells()[cell].text;
    const std::string_view title = meantValue(written, room_);
    if (!renamed[cell].empty()) {
      bytes_ += renamed[cell];
    } else if (fromUtf8_ && !isHeld(title)) {
      unheldTitles_.add(title, rows.line());
      writeUnheld(title, cell);
    } else if (!needsQuotes(title)) {
      encode(title, rows.line());
    } else {
      isCanonical_ ? encode(written, rows.line()) : writeText(written, rows.line());
    }
  }
  endRow(rows);
}

void CanonicalWriter::writeUnheld(std::string_view title, std::size_t cell) {
  std::string held = CodePage::windows1252().encode(title);
  std::erase_if(held, [](char c) { return needsQuotes({&c, 1}); });
  bytes_ += held + " #" + std::to_string(cell + 1);
}

void CanonicalWriter::writeRow(const RowReader& rows) {
  beginRow(rows);
  if (isCanonical_) {
    bytes_ += rows.row();
  } else {
    writeCells(rows, 0, rows.cells().size());
  }
  endRow(rows);
}

void CanonicalWriter::beginRow(const RowReader& rows) {
  if (keepsLines_) lines_.push_back(rows.line());
}

void CanonicalWriter::writeCells(const RowReader& rows, std::size_t first, std::size_t end) {
  for (std::size_t cell = first; cell < end; ++cell) {
    if (cell > 0) bytes_ += ',';
    const WrittenCell& written = rows.cells()[cell];
    if (isCanonical_ || written.isPlain) {
      bytes_ += written.text;
    } else {
      writeText(written.text, rows.line());
    }
  }
}

void CanonicalWriter::writeValue(std::string_view value, std::size_t cell) {
  if (cell > 0) bytes_ += ',';
  bytes_ += value;
}

void CanonicalWriter::endRow(const RowReader& rows) {
  bytes_ += isCanonical_ ? rows.lineEnd() : lineEnd;
}

void CanonicalWriter::writeText(std::string_view written, std::size_t line) {
  const std::string_view value = meantValue(written, room_);
  if (value.find(',') != std::string_view::npos) commas_.add(value, line);
  if (!needsQuotes(value)) return encode(value, line);
  quoted_.clear();
  appendQuoted(quoted_, value);
  encode(quoted_, line);
}

void CanonicalWriter::encode(std::string_view text, std::size_t line) {
  if (!fromUtf8_ || isAscii(text)) {
    bytes_ += text;
  } else if (CodePage::windows1252().appendEncoded(bytes_, text) > 0) {
    lacking_.add(text, line);
  }
}

}  // namespace velk
