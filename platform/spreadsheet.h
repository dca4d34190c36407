// The spreadsheet: the little that the system reads from workbooks and writes to new ones.
//
// Either the installed spreadsheet application does it, or the system's own reader and writer of
// .xls. Rows and columns count from 1, up to 65,536 rows and 256 columns; a cell outside them is
// error 9. Whatever the realization meets is a RuntimeError: the numbers of platform/files.h, 321
// (invalid file format) for a file that is no readable workbook, 429 when the application can't be
// started, or the application's own.
#pragma once

#include <bitset>
#include <memory>
#include <string>
#include <string_view>

namespace velk {

/// The grid of a worksheet in the .xls format.
inline constexpr int maxSheetRows = 65536;
inline constexpr int maxSheetColumns = 256;

/// Columns of a worksheet; the position is the number less one.
using ColumnSet = std::bitset<maxSheetColumns>;

/// What stands behind a cell's text.
enum class CellNature {
  Plain,
  Error,     ///< one that a formula came to, such as #N/A; not a text that reads so
  NoResult,  ///< a formula that was never calculated: its text is 0 or empty
};

/// From one cell to another, both included.
struct CellRange {
  int firstRow;
  int firstColumn;
  int lastRow;
  int lastColumn;
};

/// The first worksheet of a workbook that was opened; chart sheets do not count.
class WorksheetReader {
 public:
  virtual ~WorksheetReader() = default;
  /// The last row with a cell that is not blank; 0 when there is none.
  virtual int rowCount() const = 0;
  /// What a user sees in the cell with the column wide enough; empty for a blank cell. A number in
  /// a general, text or exponent format comes as its digits: 9876543210, never 9.88E+09.
  virtual std::string text(int row, int column) const = 0;
  /// An application that calculates formulas itself need not tell.
  virtual CellNature nature(int /*row*/, int /*column*/) const { return CellNature::Plain; }
  /// The sheet's name if it is hidden from users, else empty.
  virtual std::string hiddenName() const = 0;
};

/// The first worksheet of a new workbook.
class WorksheetWriter {
 public:
  virtual ~WorksheetWriter() = default;

  /// The text stays a text, whatever it begins with: leading zeros, "=", "+", "-", "@". Later texts
  /// replace earlier ones, and an empty one leaves the cell blank. More than 32,767 UTF-16 units
  /// are error 5. It may be held back until the sheet is saved or used otherwise.
  virtual void setText(int row, int column, std::string_view text) = 0;
  virtual void setBold(const CellRange& range) = 0;
  /// Cells of the range take only values of a list (stop alert), which a drop-down offers.
  /// `source` is a range of one column of this sheet; else error 5.
  virtual void addListValidation(const CellRange& range, const CellRange& source) = 0;
  /// In characters of the default font, 0 to 255.
  virtual void setColumnWidth(int number, double characters) = 0;
  virtual void hideColumn(int number) = 0;
  /// Fits the width of some columns to the texts that they have now.
  virtual void autoFit(int firstColumn, int lastColumn) = 0;
  /// Saves the workbook in the .xls format; nothing else may be done with it then. A file of that
  /// name is replaced once the new one is complete.
  virtual void saveAs(std::string_view path) = 0;
};

/// The application. It quits with this object, also after a failure; the sheets have to go first.
class Spreadsheet {
 public:
  virtual ~Spreadsheet() = default;
  /// Of columns that are not wanted only the first row need be read; the rest may show as blank.
  virtual std::unique_ptr<WorksheetReader> open(std::string_view path, const ColumnSet& wanted) = 0;
  virtual std::unique_ptr<WorksheetWriter> add() = 0;
};

}  // namespace velk
