#include "platform/spreadsheet/xls/record_writer.h"

#include <algorithm>

#include "base/text.h"

namespace velk::xls {

RecordWriter& RecordWriter::begin(Record type) {
  end();
  start_ = to_.size();
  // The length is not known yet; end() fills it in.
  return u16(static_cast<std::size_t>(type)).u16(0);
}

void RecordWriter::end() {
  if (start_ == std::string::npos) return;
  const std::size_t length = to_.size() - start_ - recordHeaderSize;
  to_[start_ + 2] = static_cast<char>(length & 0xFFU);
  to_[start_ + 3] = static_cast<char>(length >> 8U);
}

void RecordWriter::sharedText(std::string_view text) {
  if (isAscii(text)) return characters(text, false);
  // One byte a character where all are Latin-1, as spreadsheet programs write them.
  const std::u16string units = toUtf16(text);
  const bool wide = std::any_of(units.begin(), units.end(), [](char16_t u) { return u > 0xFF; });
  std::string bytes;
  for (const char16_t unit : units) {
    if (wide) {
      appendNumber(bytes, static_cast<std::uint16_t>(unit));
    } else {
      bytes += static_cast<char>(unit);
    }
  }
  characters(bytes, wide);
}

/// Only between two characters may a text be cut, and then a byte tells their width anew.
void RecordWriter::characters(std::string_view bytes, bool wide) {
  const std::uint8_t flags = wide ? textIsWide : 0;
  const std::size_t unit = wide ? 2 : 1;
  constexpr std::size_t front = 3;
  // The front and the first character must not be parted.
  if (room() < front + unit) begin(Record::Continue);
  u16(bytes.size() / unit).u8(flags);
  for (;;) {
    // Rounded down to whole characters.
    const std::size_t here = std::min(bytes.size(), room() / unit * unit);
    to_.append(bytes.substr(0, here));
    bytes.remove_prefix(here);
    if (bytes.empty()) return;
    begin(Record::Continue).u8(flags);
  }
}

RecordWriter& RecordWriter::shortText(std::string_view text, std::size_t lengthBytes) {
  lengthBytes == 1 ? u8(static_cast<std::uint8_t>(text.size())) : u16(text.size());
  // The flags of the text: one byte for each character.
  u8(0);
  to_.append(text);
  return *this;
}

}  // namespace velk::xls
