// Writes rows in the way that the screens read them.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/opnimp/convert/row_reader.h"
#include "apps/opnimp/convert/value_survey.h"

namespace velk {

class CanonicalWriter {
 public:
  /// `fromUtf8`: else the rows are in windows-1252. `isCanonical`: they are laid out as the screens
  /// have them, and what is not rewritten stays byte for byte. `keepsLines`: they are not those of
  /// the file.
  CanonicalWriter(bool fromUtf8, bool isCanonical, bool keepsLines)
      : fromUtf8_(fromUtf8), isCanonical_(isCanonical), keepsLines_(keepsLines) {}

  /// Room for so many bytes in so many lines.
  void reserve(std::size_t size, std::size_t lines) {
    bytes_.reserve(size);
    if (keepsLines_) lines_.reserve(lines);
  }

  /// `renamed`: the title of each column, in ASCII; empty: the one that the row has. One with
  /// letters that the screens do not have gets its number, so that no two are of the same signs.
  void writeTitles(const RowReader& rows, std::span<const std::string> renamed);
  void writeRow(const RowReader& rows);

  // A row, cell by cell.
  void beginRow(const RowReader& rows);
  /// Those from `first` to before `end`.
  void writeCells(const RowReader& rows, std::size_t first, std::size_t end);
  /// In the place of the cell: ASCII without separators.
  void writeValue(std::string_view value, std::size_t cell);
  void endRow(const RowReader& rows);

  /// Values with letters that windows-1252 does not have.
  const ClueTally& lacking() const { return lacking_; }
  const ClueTally& unheldTitles() const { return unheldTitles_; }
  /// Values with a comma.
  const ClueTally& commas() const { return commas_; }
  std::string takeBytes() { return std::move(bytes_); }
  /// The line of each row.
  std::vector<std::size_t> takeLines() { return std::move(lines_); }

 private:
  void writeUnheld(std::string_view title, std::size_t cell);
  void writeText(std::string_view written, std::size_t line);
  void encode(std::string_view text, std::size_t line);

  bool fromUtf8_;
  bool isCanonical_;
  bool keepsLines_;
  std::string bytes_;
  std::vector<std::size_t> lines_;
  std::string room_;
  std::string quoted_;
  ClueTally lacking_;
  ClueTally unheldTitles_;
  ClueTally commas_;
};

}  // namespace velk
