// The records of a workbook stream (BIFF8), as Microsoft's published document MS-XLS lays them
// out: a number, the length of what follows, and that.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/spreadsheet/little_endian.h"

namespace velk::xls {

enum class Record : std::uint16_t {
  Formula = 0x0006,
  Bof2 = 0x0009,  // how sheets of versions 2, 3 and 4 begin
  Eof = 0x000A,
  Header = 0x0014,
  Footer = 0x0015,
  DateMode = 0x0022,
  FilePass = 0x002F,
  Font = 0x0031,
  Continue = 0x003C,
  Window1 = 0x003D,
  CodePage = 0x0042,
  ColumnInfo = 0x007D,
  BoundSheet = 0x0085,
  MulRk = 0x00BD,
  MulBlank = 0x00BE,
  RString = 0x00D6,
  ExtendedFormat = 0x00E0,
  SharedStrings = 0x00FC,
  LabelSst = 0x00FD,
  ValidationList = 0x01B2,
  Validation = 0x01BE,
  Dimensions = 0x0200,
  Blank = 0x0201,
  Number = 0x0203,
  Label = 0x0204,
  BoolErr = 0x0205,
  String = 0x0207,
  Row = 0x0208,
  Bof3 = 0x0209,
  Window2 = 0x023E,
  Rk = 0x027E,
  Style = 0x0293,
  Bof4 = 0x0409,
  Format = 0x041E,
  Bof = 0x0809,
};

inline constexpr std::size_t recordHeaderSize = 4;
inline constexpr std::size_t maxRecordLength = 8224;  // what is longer goes on in Continue records

inline constexpr std::uint16_t versionBiff8 = 0x0600;
inline constexpr std::uint16_t substreamGlobals = 0x0005;
inline constexpr std::uint16_t substreamWorksheet = 0x0010;
inline constexpr std::uint8_t sheetIsWorksheet = 0;

/// The byte before the characters of a text.
inline constexpr std::uint8_t textIsWide = 0x01;  // UTF-16; else the lower bytes of it
inline constexpr std::uint8_t textHasPhonetics = 0x04;
inline constexpr std::uint8_t textHasRuns = 0x08;

/// Damage when a record is longer than any may be, or, having a fixed layout, of another length.
/// What is too long hides the records behind it, which may be rows. Records that end with a text, a
/// formula or parts of their own are for their reader to check.
void checkLength(Record type, std::size_t length);

/// Goes through a stream record by record.
class RecordReader {
 public:
  RecordReader(std::string_view stream, std::size_t at) : stream_(stream), at_(at) {}

  /// Takes the next record. Damage when the stream ends before it does, and as checkLength().
  void next() {
    if (stream_.size() - at_ < recordHeaderSize) damaged("its records have no end");
    type_ = peek();
    const auto length = loadNumber<std::uint16_t>(stream_.data() + at_ + 2);
    at_ += recordHeaderSize;
    if (stream_.size() - at_ < length) damaged("a record is longer than the rest");
    checkLength(type_, length);
    payload_ = stream_.substr(at_, length);
    at_ += length;
  }
  Record type() const { return type_; }
  std::string_view payload() const { return payload_; }

  bool continues() const {
    return stream_.size() - at_ >= recordHeaderSize && peek() == Record::Continue;
  }

 private:
  Record peek() const { return Record{loadNumber<std::uint16_t>(stream_.data() + at_)}; }

  std::string_view stream_;
  std::size_t at_;
  Record type_{};
  std::string_view payload_;
};

/// The payload of a reader's current record together with those of the Continue records after it.
class ContinuedReader {
 public:
  explicit ContinuedReader(RecordReader& records) : records_(records), left_(records.payload()) {}

  bool atEnd() const { return left_.empty() && !records_.continues(); }
  /// Damage when there is more than was read.
  void finish() const {
    if (!atEnd()) damaged("a record is too long");
  }
  std::uint8_t u8();
  std::uint16_t u16();
  std::uint32_t u32();
  void skip(std::size_t count);

  /// Appends a text as UTF-8. The runs of fonts and the phonetic part that may follow it are passed
  /// over.
  void appendText(std::string& to) { appendText(to, u16()); }
  /// The same for a text whose length takes one byte.
  void appendShortText(std::string& to) { appendText(to, u8()); }

 private:
  void advance();
  void appendText(std::string& to, std::size_t length);
  void appendCharacters(std::string& to, std::size_t length, bool wide);

  RecordReader& records_;
  std::string_view left_;
};

}  // namespace velk::xls
