// Appends records to a workbook stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/spreadsheet/little_endian.h"
#include "platform/spreadsheet/xls/records.h"

namespace velk::xls {

class RecordWriter {
 public:
  explicit RecordWriter(std::string& to) : to_(to) {}

  /// Begins a record; the one before ends here.
  RecordWriter& begin(Record type);
  /// Sets the length of the last record.
  void end();

  RecordWriter& u8(std::uint8_t value) { return append(value); }
  RecordWriter& u16(std::size_t value) { return append(static_cast<std::uint16_t>(value)); }
  RecordWriter& u32(std::size_t value) { return append(static_cast<std::uint32_t>(value)); }

  /// A text of the shared table. What does not fit into the record goes on in Continue records.
  void sharedText(std::string_view text);
  /// A short ASCII text, preceded by its length in one byte or in two.
  RecordWriter& shortText(std::string_view text, std::size_t lengthBytes);

 private:
  template <class T>
  RecordWriter& append(T value) {
    appendNumber(to_, value);
    return *this;
  }
  std::size_t room() const { return start_ + recordHeaderSize + maxRecordLength - to_.size(); }
  void characters(std::string_view bytes, bool wide);

  std::string& to_;
  std::size_t start_ = std::string::npos;
};

}  // namespace velk::xls
