#include "platform/spreadsheet/zipped/xlsx_styles.h"

#include <algorithm>

#include "base/numbers.h"

namespace velk {

const NumberFormat& XlsxStyles::format(std::size_t style) const {
  return formats_[style < positions_.size() ? positions_[style] : 0];
}

bool XlsxStyles::showsNothing(std::size_t style) const {
  return blank_[style < positions_.size() ? positions_[style] : 0];
}

void XlsxStyles::begin(std::string_view name, const XmlAttributes& attributes) {
  const auto number = exactNumber<std::uint16_t>(attributes["numFmtId"]).value_or(0);
  if (name == "numFmt") codes_.push_back({number, std::string(attributes["formatCode"])});
  if (name == "cellXfs") inCells_ = true;
  if (name == "xf" && inCells_) positions_.push_back(positionOf(number));
}

void XlsxStyles::end(std::string_view name) {
  if (name == "cellXfs") inCells_ = false;
}

// Codes stand before the styles that use them.
std::size_t XlsxStyles::positionOf(std::uint16_t number) {
  const auto known = std::ranges::find(made_, number);
  if (known != made_.end()) return static_cast<std::size_t>(known - made_.begin()) + 1;
  const auto own = std::ranges::find(codes_, number, &Code::number);
  const std::string_view code =
      own == codes_.end() ? builtInFormat(number) : std::string_view(own->code);
  formats_.emplace_back(code);
  blank_.push_back(!code.empty() && code.find_first_not_of(';') == std::string_view::npos);
  made_.push_back(number);
  return made_.size();
}

}  // namespace velk
