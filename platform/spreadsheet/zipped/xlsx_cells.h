// The cells of a sheet of an .xlsx workbook.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/spreadsheet/sheet_sink.h"
#include "platform/spreadsheet/text_pool.h"
#include "platform/spreadsheet/zipped/xlsx_parts.h"
#include "platform/spreadsheet/zipped/xlsx_styles.h"
#include "platform/spreadsheet/zipped/xml_reader.h"

namespace velk {

class XlsxCells final : public XmlHandler {
 public:
  XlsxCells(const XlsxParts& parts, const TextPool& texts, const XlsxStyles& styles,
            SheetSink& sink)
      : parts_(parts), texts_(texts), styles_(styles), sink_(sink) {}

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
