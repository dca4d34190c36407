#include "platform/spreadsheet/xls/records.h"

#include <algorithm>

#include "base/text.h"

namespace velk::xls {

namespace {

void appendUnits(std::u16string& to, std::string_view characters, bool wide) {
  const std::size_t step = wide ? 2 : 1;
  for (std::size_t i = 0; i < characters.size(); i += step) {
    to += wide ? static_cast<char16_t>(loadNumber<std::uint16_t>(characters.data() + i))
               : static_cast<char16_t>(static_cast<unsigned char>(characters[i]));
  }
}

}  // namespace

void ContinuedReader::advance() {
  // A loop, because a Continue record may be empty.
  while (left_.empty()) {
    if (!records_.continues()) damaged("a text ends too early");
    records_.next();
    left_ = records_.payload();
  }
}

std::uint8_t ContinuedReader::u8() {
  if (left_.empty()) advance();
  const auto byte = static_cast<std::uint8_t>(left_.front());
  left_.remove_prefix(1);
  return byte;
}

std::uint16_t ContinuedReader::u16() {
  const unsigned low = u8();
  return static_cast<std::uint16_t>(low | static_cast<unsigned>(u8()) << 8U);
}

std::uint32_t ContinuedReader::u32() {
  const std::uint32_t low = u16();
  return low | static_cast<std::uint32_t>(u16()) << 16U;
}

void ContinuedReader::skip(std::size_t count) {
  while (count > 0) {
    advance();
    const std::size_t here = std::min(count, left_.size());
    left_.remove_prefix(here);
    count -= here;
  }
}

void ContinuedReader::appendText(std::string& to, std::size_t length) {
  const unsigned flags = u8();
  // Both counts precede the characters; what they count follows them.
  const std::size_t runs = (flags & textHasRuns) != 0 ? u16() : 0;
  const std::size_t phonetics = (flags & textHasPhonetics) != 0 ? u32() : 0;
  appendCharacters(to, length, (flags & textIsWide) != 0);
  // A run is a position and a font of two bytes each.
  skip(runs * 4);
  skip(phonetics);
}

void ContinuedReader::appendCharacters(std::string& to, std::size_t length, bool wide) {
  // Most texts are ASCII and in one piece.
  if (!wide && left_.size() >= length && isAscii(left_.substr(0, length))) {
    to.append(left_.substr(0, length));
    left_.remove_prefix(length);
    return;
  }
  // Where characters go on in another record, a byte before them tells their width anew. Both
  // halves of a surrogate pair have to meet, so all units are gathered first.
  std::u16string units;
  while (units.size() < length) {
    if (left_.empty()) {
      advance();
      wide = (u8() & textIsWide) != 0;
    }
    const std::size_t step = wide ? 2 : 1;
    const std::size_t here = std::min((length - units.size()) * step, left_.size() / step * step);
    if (here == 0 && !left_.empty()) damaged("a character is cut in two");
    appendUnits(units, left_.substr(0, here), wide);
    left_.remove_prefix(here);
  }
  to += toUtf8(units);
}

}  // namespace velk::xls
