#include "platform/windows/excel_sheets.h"

#include <algorithm>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "platform/spreadsheet/number_format.h"
#include "platform/spreadsheet/sheet_cells.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

double numberIn(const VARIANT& variant) {
  const Value value = toValue(variant);
  if (const auto* real = std::get_if<double>(&value)) return *real;
  if (const auto* date = std::get_if<Date>(&value)) return date->days;
  return leadingNumber(toText(value));
}

int integer(const Variant& variant) {
  return static_cast<int>(numberIn(variant.get()));
}

/// The value of a range: an array, counting from 1 row by row and column by column, or that of a
/// single cell.
class RangeValues {
 public:
  explicit RangeValues(const Variant& variant) : variant_(variant.get()) {
    if ((variant_.vt & VT_ARRAY) == 0) return;
    if (variant_.vt != (VT_ARRAY | VT_VARIANT) || SafeArrayGetDim(variant_.parray) != 2) {
      throw RuntimeError(ErrorNumber::TypeMismatch);
    }
    elements_ = static_cast<const VARIANT*>(variant_.parray->pvData);
    // rgsabound lists the dimensions in reverse order.
    rows_ = variant_.parray->rgsabound[1].cElements;
    columns_ = variant_.parray->rgsabound[0].cElements;
  }

  /// Rows and columns count from 0.
  const VARIANT& at(int row, int column) const {
    if (elements_ == nullptr) return variant_;
    const auto r = static_cast<ULONG>(row);
    const auto c = static_cast<ULONG>(column);
    if (r >= rows_ || c >= columns_) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
    // The first dimension changes fastest, so the cells of a column follow each other.
    return elements_[c * rows_ + r];
  }

 private:
  const VARIANT& variant_;
  const VARIANT* elements_ = nullptr;
  ULONG rows_ = 0;
  ULONG columns_ = 0;
};

/// The first row or column of the block that contains this one.
int blockStart(int place, int size) {
  return (place - 1) / size * size + 1;
}

class ExcelSheetReader final : public WorksheetReader {
 public:
  explicit ExcelSheetReader(ExcelWorkbook workbook)
      : workbook_(std::move(workbook)), sheet_(workbook_.firstSheet()) {
    used_ = usedPart(sheet_);
    // The component knows 65,536 rows; to import only those would lose records without a word.
    if (used_.lastRow > maxSheetRows) {
      throw RuntimeError(ErrorNumber::InvalidFileFormat,
                         "The worksheet has more than 65,536 rows; save it as an Excel 97-2003 "
                         "workbook (*.xls)");
    }
    used_.lastColumn = std::min(used_.lastColumn, maxSheetColumns);
  }

  // The used range may end with cells that have only a format, so the last text is looked for.
  int rowCount() const override {
    int row = used_.lastRow;
    while (row > 0) {
      const int start = blockStart(row, blockRows);
      if (const int last = lastRowIn(start)) return last;
      row = start - 1;
    }
    return 0;
  }

  std::string hiddenName() const override {
    constexpr int visible = -1;  // xlSheetVisible
    if (integer(sheet_.get("Visible")) == visible) return {};
    return toText(toValue(sheet_.get("Name").get()));
  }

  std::string text(int row, int column) const override {
    checkCell(row, column);
    if (row > used_.lastRow || column > used_.lastColumn) return {};
    return block(row, column).at(row, column);
  }

 private:
  /// So many rows and columns are asked for at once: what an import needs, and few of the calls
  /// that each take as long as some thousand cells.
  static constexpr int blockRows = 1024;
  static constexpr int blockColumns = 8;

  struct Block {
    CellRange range;
    std::vector<std::string> texts;  ///< row by row
    std::string& at(int row, int column) {
      const int width = range.lastColumn - range.firstColumn + 1;
      return texts[static_cast<std::size_t>((row - range.firstRow) * width + column -
                                            range.firstColumn)];
    }
  };
  /// A number whose text is not known yet.
  struct Number {
    int row;
    double value;
    std::string* text;
  };
  using Numbers = std::span<const Number>;

  Block& block(int row, int column) const {
    const std::pair start(blockStart(row, blockRows), blockStart(column, blockColumns));
    if (const auto found = blocks_.find(start); found != blocks_.end()) return found->second;
    Block loaded{{start.first, start.second, std::min(start.first + blockRows - 1, used_.lastRow),
                  std::min(start.second + blockColumns - 1, used_.lastColumn)},
                 {}};
    load(loaded);
    return blocks_.emplace(start, std::move(loaded)).first->second;
  }

  void load(Block& block) const {
    const CellRange& range = block.range;
    // Value2, because Value turns dates and currency into types of their own.
    const Variant answer = sheet_.object("Range", rangeName(range)).get("Value2");
    const RangeValues values(answer);
    block.texts.resize(static_cast<std::size_t>(range.lastRow - range.firstRow + 1) *
                       static_cast<std::size_t>(range.lastColumn - range.firstColumn + 1));
    // Column by column: neighbours in a column often share one number format.
    for (int column = range.firstColumn; column <= range.lastColumn; ++column) {
      std::vector<Number> numbers;
      for (int row = range.firstRow; row <= range.lastRow; ++row) {
        const VARIANT& value = values.at(row - range.firstRow, column - range.firstColumn);
        loadCell(block, row, column, value, numbers);
      }
      if (!numbers.empty()) showNumbers(column, numbers);
    }
  }

  static void loadCell(Block& block, int row, int column, const VARIANT& value,
                       std::vector<Number>& numbers) {
    // Automation adds 2000 to the codes of the .xls format: 2007 is #DIV/0!.
    constexpr DWORD firstErrorCode = 2000;
    std::string& text = block.at(row, column);
    switch (value.vt) {
      case VT_EMPTY:
        return;
      case VT_BSTR:
        text = Bstr::textOf(value.bstrVal);
        return;
      case VT_BOOL:
        text = booleanText(value.boolVal != VARIANT_FALSE);
        return;
      case VT_ERROR:
        text = cellErrorText((static_cast<DWORD>(value.scode) & 0xFFFFU) - firstErrorCode);
        return;
      default:
        numbers.push_back({row, numberIn(value), &text});
    }
  }

  // A range has a number format when all its cells have the same one, else null: then each half is
  // asked, because a call takes as long as some thousand cells.
  void showNumbers(int column, Numbers numbers) const {
    const CellRange range{numbers.front().row, column, numbers.back().row, column};
    const Variant code = sheet_.object("Range", rangeName(range)).get("NumberFormat");
    if (code.get().vt != VT_BSTR && numbers.size() > 1) {
      const std::size_t half = numbers.size() / 2;
      showNumbers(column, numbers.first(half));
      return showNumbers(column, numbers.subspan(half));
    }
    const NumberFormat& shown = format(toText(toValue(code.get())));
    for (const Number& number : numbers) *number.text = shown.text(number.value, from1904());
  }

  // The application gives the machine's short date in its American spelling, whatever the
  // machine's.
  const NumberFormat& format(const std::string& code) const {
    constexpr std::uint16_t shortDate = 14;
    constexpr std::uint16_t shortDateAndTime = 22;
    const std::string_view meant = code == "m/d/yyyy"        ? builtInFormat(shortDate)
                                   : code == "m/d/yyyy h:mm" ? builtInFormat(shortDateAndTime)
                                                             : std::string_view(code);
    return formats_.try_emplace(code, meant).first->second;
  }

  bool from1904() const {
    if (!from1904_) from1904_ = toText(toValue(workbook_.object().get("Date1904").get())) == "True";
    return *from1904_;
  }

  int lastRowIn(int firstRow) const {
    int last = 0;
    for (int column = 1; column <= used_.lastColumn; column += blockColumns) {
      Block& cells = block(firstRow, column);
      const std::ptrdiff_t width = std::ptrdiff_t{cells.range.lastColumn} - column + 1;
      const auto found = std::find_if(cells.texts.rbegin(), cells.texts.rend(),
                                      [](const std::string& text) { return !text.empty(); });
      if (found == cells.texts.rend()) continue;
      // `rend - found` counts the elements up to this text, so its own position is one less.
      last = std::max(last, static_cast<int>((cells.texts.rend() - found - 1) / width) + firstRow);
    }
    return last;
  }

  ExcelWorkbook workbook_;
  ExcelObject sheet_;
  CellRange used_{1, 1, 0, 0};
  mutable std::map<std::pair<int, int>, Block> blocks_;
  mutable std::map<std::string, NumberFormat> formats_;
  mutable std::optional<bool> from1904_;
};

}  // namespace

CellRange usedPart(const ExcelObject& sheet) {
  const ExcelObject used = sheet.object("UsedRange");
  const int rows = integer(used.object("Rows").get("Count"));
  const int columns = integer(used.object("Columns").get("Count"));
  // The used range need not begin in the first row or column.
  const int lastRow = integer(used.get("Row")) + rows - 1;
  return {1, 1, lastRow, integer(used.get("Column")) + columns - 1};
}

std::unique_ptr<WorksheetReader> excelSheetReader(ExcelWorkbook workbook) {
  return std::make_unique<ExcelSheetReader>(std::move(workbook));
}

}  // namespace velk
