// Whether the line that is taken for the titles may be a record: the first one of a file that has
// no titles.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/convert/row_reader.h"

namespace velk {

class TitleDoubt {
 public:
  /// There is none before a line is looked at.
  TitleDoubt() = default;
  /// `titles`: those of the row, in UTF-8; `natures`: of the columns. Nothing is in doubt if the
  /// arguments say where the titles are.
  TitleDoubt(const RowReader& row, std::span<const std::string> titles,
             std::span<const FieldNature> natures, const Arguments& arguments);

  /// The records below may show it.
  bool isOpen() const { return !columns_.empty(); }
  void addRecord(const RowReader& record);

  /// Why it may be a record; empty: it has titles.
  std::string refusal() const;
  /// The option by which it has.
  std::string choice() const;

 private:
  struct Column {
    std::string title;
    std::string written;  ///< as the file has it
    std::string shape;    ///< of the title, if it has digits; empty: another one stands below
    bool recurs = false;
    bool isFilled = false;  ///< some record has a value in it
  };

  std::size_t line_ = 0;
  std::string row_;
  std::string value_;            // a title that reads as a date or amount
  std::vector<Column> columns_;  // empty: some title is known
};

}  // namespace velk
