// The document of an .ods workbook: its sheets and their cells.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/sheet_sink.h"
#include "platform/spreadsheet/zipped/xml_reader.h"

namespace velk {

class OdsWorkbook final : public XmlHandler {
 public:
  explicit OdsWorkbook(SheetSink& sink) : sink_(sink) {}

  bool hasSheets() const { return hasSheets_; }

  void begin(std::string_view name, const XmlAttributes& attributes) override;
  void end(std::string_view name) override;
  void text(std::string_view piece) override;

 private:
  /// A cell, or several of the same in a row.
  struct Cells {
    SheetCell first;
    std::uint32_t count;
    std::string text;
  };

  void beginStyle(std::string_view name, const XmlAttributes& attributes);
  void beginSheet(const XmlAttributes& attributes);
  void beginColumns(const XmlAttributes& attributes);
  void beginRow(const XmlAttributes& attributes);
  void beginCell(const XmlAttributes& attributes);
  void beginInText(std::string_view name, const XmlAttributes& attributes);
  void endCell();
  void endRow();

  SheetSink& sink_;
  bool hasSheets_ = false;
  int depth_ = 0;
  int cellDepth_ = 0;       // of the cell that is read; 0: there is none
  int paragraphDepth_ = 0;  // the same of a paragraph of its text
  bool inSheet_ = false;
  std::string style_;                                // that is read
  std::set<std::string, std::less<>> hiddenSheets_;  // styles of sheets that users do not see
  std::uint32_t columns_ = 0;                        // of the sheet that were described
  HiddenColumns hiddenColumns_;
  bool isRowHidden_ = false;
  std::vector<bool> rowGroups_;  // those that the row is in, from outside: whether each is hidden
  int skipDepth_ = 0;            // of what has tables that are no sheets; 0: nothing
  std::uint32_t row_ = 0;
  std::uint32_t rowCount_ = 1;  // how often the row stands there
  std::uint32_t column_ = 0;
  Cells cell_{};
  bool hasFormula_ = false;
  bool hasValue_ = false;
  std::string written_;  // its value, for one without a text
  std::size_t paragraphs_ = 0;
  std::vector<Cells> cells_;  // of the row
};

}  // namespace velk
