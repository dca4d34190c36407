// A worksheet that the spreadsheet application has open.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/spreadsheet.h"
#include "platform/spreadsheet/number_format.h"
#include "platform/windows/excel_application.h"

namespace velk {

/// Asks for the cells in blocks, once they are needed; the answers are kept.
class ExcelSheetReader final : public WorksheetReader {
 public:
  explicit ExcelSheetReader(ExcelWorkbook workbook);

  int rowCount() const override;
  std::string text(int row, int column) const override;

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

  Block& block(int row, int column) const;
  void load(Block& block) const;
  static void loadCell(Block& block, int row, int column, const VARIANT& value,
                       std::vector<Number>& numbers);
  void showNumbers(int column, Numbers numbers) const;
  const NumberFormat& format(const std::string& code) const;
  bool from1904() const;
  int lastRowIn(int firstRow) const;

  ExcelWorkbook workbook_;
  ExcelObject sheet_;
  CellRange used_{1, 1, 0, 0};
  mutable std::map<std::pair<int, int>, Block> blocks_;
  mutable std::map<std::string, NumberFormat> formats_;
  mutable std::optional<bool> from1904_;
};

}  // namespace velk
