// A text with separators, row by row. A value that begins with a double quote goes on to the next
// single one, separators and line breaks included; two quotes inside it are one.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

enum class LineEnds {
  Pairs,           ///< carriage return + line feed only, inside quotes, too: as the screens read
  LineFeeds,       ///< with no carriage return before it, one, or two
  CarriageReturns  ///< alone
};

/// A value as it is written, quotes included.
struct WrittenCell {
  std::string_view text;
  /// It is ASCII, and has nothing in it that quotes, separates or ends anything, here or on the
  /// screens: it means what is written.
  bool isPlain = true;
};

class RowReader {
 public:
  /// The text lives as long. `line` is the number of the one at `offset`.
  RowReader(std::string_view text, char delimiter, LineEnds ends, std::size_t offset = 0,
            std::size_t line = 1);

  /// Goes on to the next row; false behind the last one.
  bool next();

  /// Valid until the next row.
  std::span<const WrittenCell> cells() const { return cells_; }
  /// Without its line end.
  std::string_view row() const { return text_.substr(start_, end_ - start_); }
  std::string_view lineEnd() const { return text_.substr(end_, next_ - end_); }
  /// Of its beginning.
  std::size_t line() const { return line_; }
  /// A quoted value does not end, or goes on behind its closing quote, so that where values begin
  /// and end is anybody's guess; or the row is longer than any record, and not all of its values
  /// are told.
  bool isBroken() const { return broken_; }

 private:
  std::size_t endOfQuoted(std::size_t at);
  std::size_t endOfPlain(std::size_t at);
  bool isLineEnd(std::size_t at) const;
  void countLine(char c);
  void endRow(std::size_t at);

  std::string_view text_;
  char delimiter_;
  LineEnds ends_;
  std::size_t start_ = 0;
  std::size_t end_ = 0;
  std::size_t next_;
  std::size_t line_;
  std::size_t nextLine_;
  bool broken_ = false;
  std::vector<WrittenCell> cells_;
  bool isPlain_ = true;              // the cell that is read
  std::array<bool, 256> special_{};  // the bytes that a plain value does not have
};

/// What a value means: without its quotes. `room` holds it where that takes a text of its own.
std::string_view meantValue(std::string_view written, std::string& room);

/// What a value cannot have outside quotes of a line whose values commas separate.
bool needsQuotes(std::string_view value);
/// Adds such a value in quotes. A line break in it becomes a line feed: others would end the line.
void appendQuoted(std::string& to, std::string_view value);

/// Blanks, the mark that ends files of old programs, or one empty value, which would be no record
/// without its quotes. Its line end does not count.
bool isBlankRow(std::string_view row);
/// Separators and no value, as spreadsheet programs write for rows that are empty.
bool isEmptyRow(std::span<const WrittenCell> cells);

}  // namespace velk
