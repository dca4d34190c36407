// The texts that the cells of an .xlsx workbook share.
#pragma once

#include <string>
#include <string_view>

#include "platform/spreadsheet/text_pool.h"
#include "platform/spreadsheet/zipped/xml_reader.h"

namespace velk {

/// A text of such a workbook: "_x000D_" is the character of that number.
void appendXlsxText(std::string& to, std::string_view written);

class XlsxTexts final : public XmlHandler {
 public:
  explicit XlsxTexts(TextPool& texts) : texts_(texts) {}

  void begin(std::string_view name, const XmlAttributes& attributes) override;
  void end(std::string_view name) override;
  void text(std::string_view piece) override;

 private:
  TextPool& texts_;
  std::string text_;
  bool inText_ = false;
  bool inReading_ = false;  // how a text is spoken, beside it
};

}  // namespace velk
