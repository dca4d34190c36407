// The cells of a sheet of an .xlsx workbook.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/sheet_sink.h"
#include "platform/spreadsheet/text_pool.h"
#include "platform/spreadsheet/zipped/xlsx_parts.h"
#include "platform/spreadsheet/zipped/xlsx_styles.h"
#include "platform/spreadsheet/zipped/xml_reader.h"

namespace velk {

/// Which cells others cover that they were merged with. A sheet tells of it behind its cells.
class XlsxMerges final : public XmlHandler {
 public:
  bool covers(std::uint32_t row, std::uint32_t column);

  void begin(std::string_view name, const XmlAttributes& attributes) override;
  void end(std::string_view /*name*/) override {}
  void text(std::string_view /*piece*/) override {}

 private:
  struct Range {
    std::uint32_t firstRow;
    std::uint32_t firstColumn;
    std::uint32_t lastRow;
    std::uint32_t lastColumn;
  };
  std::vector<Range> ranges_;
  std::vector<Range> ofRow_;  // those that the row asked about last is in
  std::uint32_t row_ = 0;
};

class XlsxCells final : public XmlHandler {
 public:
  XlsxCells(const XlsxParts& parts, const TextPool& texts, const XlsxStyles& styles,
            XlsxMerges& merges, SheetSink& sink)
      : parts_(parts), texts_(texts), styles_(styles), merges_(merges), sink_(sink) {}

  void begin(std::string_view name, const XmlAttributes& attributes) override;
  void end(std::string_view name) override;
  void text(std::string_view piece) override;

 private:
  void beginColumns(const XmlAttributes& attributes);
  void beginRow(const XmlAttributes& attributes);
  void beginCell(const XmlAttributes& attributes);
  void endCell();
  void fillCell(SheetCell& cell);
  void fillNumber(SheetCell& cell);

  const XlsxParts& parts_;
  const TextPool& texts_;
  const XlsxStyles& styles_;
  XlsxMerges& merges_;
  SheetSink& sink_;
  HiddenColumns hiddenColumns_;
  bool isRowHidden_ = false;
  std::uint32_t row_ = 0;
  std::uint32_t column_ = 0;
  std::string type_;
  std::size_t style_ = 0;
  bool hasFormula_ = false;
  bool hasValue_ = false;
  bool inValue_ = false;
  bool inReading_ = false;
  std::string value_;  // as it is written
  std::string shown_;
};

}  // namespace velk
