// The formats in which cells of an .xlsx workbook show numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/number_format.h"
#include "platform/spreadsheet/zipped/xml_reader.h"

namespace velk {

class XlsxStyles final : public XmlHandler {
 public:
  /// Of the style of that number; the general format for one that there is not.
  const NumberFormat& format(std::size_t style) const;

  /// Its code has no sign that shows: ";;;".
  bool showsNothing(std::size_t style) const;

  void begin(std::string_view name, const XmlAttributes& attributes) override;
  void end(std::string_view name) override;
  void text(std::string_view /*piece*/) override {}

 private:
  std::size_t positionOf(std::uint16_t number);

  struct Code {
    std::uint16_t number;
    std::string code;
  };
  std::vector<Code> codes_;
  std::vector<std::uint16_t> made_;     // those that `formats_` has behind the general one
  std::vector<std::size_t> positions_;  // in `formats_`, of each style
  std::vector<NumberFormat> formats_{NumberFormat(builtInFormat(0))};
  std::vector<bool> blank_{false};  // of the formats
  bool inCells_ = false;
};

}  // namespace velk
