#include "platform/spreadsheet/zipped/xlsx_texts.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "base/text.h"

namespace velk {

void appendXlsxText(std::string& to, std::string_view written) {
  constexpr std::string_view mark = "_x";
  constexpr std::size_t length = 7;
  for (std::size_t at; (at = written.find(mark)) != std::string_view::npos;) {
    to.append(written.substr(0, at));
    written.remove_prefix(at);
    std::uint16_t unit = 0;
    const char* const digits = written.data() + mark.size();
    const bool isLong = written.size() >= length && written[length - 1] == '_';
    const bool isUnit =
        isLong && std::from_chars(digits, digits + 4, unit, 16).ptr == digits + 4 && unit != 0;
    if (isUnit) {
      const auto character = static_cast<char16_t>(unit);
      to.append(toUtf8({&character, 1}));
    } else {
      to.append(mark);
    }
    written.remove_prefix(isUnit ? length : mark.size());
  }
  to.append(written);
}

void XlsxTexts::begin(std::string_view name, const XmlAttributes& /*attributes*/) {
  if (name == "rPh") inReading_ = true;
  inText_ = name == "t" && !inReading_;
}

void XlsxTexts::end(std::string_view name) {
  if (name == "rPh") inReading_ = false;
  inText_ = false;
  if (name != "si") return;
  texts_.addWith([this](std::string& to) { appendXlsxText(to, text_); });
  text_.clear();
}

void XlsxTexts::text(std::string_view piece) {
  if (inText_) text_ += piece;
}

}  // namespace velk
