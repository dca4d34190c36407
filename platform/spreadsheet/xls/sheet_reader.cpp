#include "platform/spreadsheet/xls/sheet_reader.h"

#include <algorithm>
#include <optional>

#include "platform/spreadsheet/xls/records.h"
#include "platform/spreadsheet/xls/workbook_globals.h"

namespace velk::xls {

namespace {

/// A packed number: an integer or the upper half of a double, and either may be a hundredfold.
double unpack(std::uint32_t packed) {
  constexpr std::uint32_t isHundredfold = 1;
  constexpr std::uint32_t isInteger = 2;
  // The shift keeps the sign: an integer has the upper 30 bits.
  const double value = (packed & isInteger) != 0
                           ? static_cast<std::int32_t>(packed) >> 2
                           : std::bit_cast<double>(std::uint64_t{packed & 0xFFFFFFFCU} << 32U);
  return (packed & isHundredfold) != 0 ? value / 100 : value;
}

class SheetReader {
 public:
  SheetReader(std::string_view stream, std::size_t at, const ColumnSet& wanted,
              SheetContents& contents)
      : records_(stream, at),
        wanted_(wanted),
        contents_(contents),
        sharedTexts_(contents.texts.size()) {}

  void read() {
    beginSubstream(records_);
    // Charts within the sheet are streams of their own, from begin to end.
    for (std::size_t depth = 1; depth > 0;) {
      records_.next();
      if (records_.type() == Record::Bof) ++depth;
      if (records_.type() == Record::Eof) --depth;
      if (depth == 1) readRecord();
    }
    checkPendingText();
  }

 private:
  struct Place {
    std::uint16_t row;
    std::uint16_t column;
    std::uint16_t format;
  };

  void readRecord() {
    FieldReader fields(records_.payload());
    switch (records_.type()) {
      case Record::LabelSst:
        return addSharedText(readPlace(fields), fields);
      case Record::Label:
        return addText(readPlace(fields), placeLength, 0);
      case Record::RString:
        return addText(readPlace(fields), placeLength, fontRunLength);
      case Record::Rk:
        return addPacked(readPlace(fields), fields);
      case Record::MulRk:
        return addPackedRow(fields);
      case Record::MulBlank:
        return checkBlankRow(fields);
      case Record::Number: {
        const Place place = readPlace(fields);
        return addNumber(place, fields.number());
      }
      case Record::BoolErr: {
        const Place place = readPlace(fields);
        // The flag after the value tells an error from a boolean.
        const std::uint8_t value = fields.u8();
        return add(place, fields.u8() != 0 ? Cell::Kind::Error : Cell::Kind::Boolean, value);
      }
      case Record::Row:
        return noteRow(fields);
      case Record::ColumnInfo:
        return noteColumns(fields);
      case Record::Header:
      case Record::Footer:
        return passText();
      case Record::Formula:
        // The text of an earlier formula must have come by now.
        checkPendingText();
        return addResult(readPlace(fields), fields);
      case Record::String:
        if (pendingText_) addText(*pendingText_, 0, 0);
        return pendingText_.reset();
      default:
        return;
    }
  }

  // Nothing is shown by these: one that is too short tells nothing, and the workbook is read.
  void noteRow(FieldReader& fields) {
    constexpr std::size_t beforeFlags = 10;
    constexpr unsigned hidden = 0x20;
    if (fields.left() < beforeFlags + 4) return;
    const std::uint16_t row = fields.u16();
    fields.skip(beforeFlags);
    if ((fields.u16() & hidden) != 0) contents_.hiddenRows.set(row);
  }

  void noteColumns(FieldReader& fields) {
    constexpr std::size_t beforeFlags = 4;
    if (fields.left() < beforeFlags + 6) return;
    const std::size_t first = fields.u16();
    const auto last = std::min<std::size_t>(fields.u16(), maxSheetColumns - 1);
    fields.skip(beforeFlags);
    if ((fields.u16() & 1U) == 0) return;
    for (auto i = first; i <= last; ++i) contents_.hiddenColumns.set(i);
  }

  static constexpr std::size_t placeLength = 6;
  static constexpr std::size_t fontRunLength = 4;
  Place readPlace(FieldReader& fields) const {
    const std::uint16_t row = fields.u16();
    const std::uint16_t column = fields.u16();
    return checked({row, column, fields.u16()});
  }

  const Place& checked(const Place& place) const {
    if (place.column >= maxSheetColumns) damaged("a cell lies outside the sheet");
    const std::size_t formats = contents_.cellFormats.size();
    if (formats > 0 && place.format >= formats) damaged("the format of a cell is missing");
    return place;
  }

  /// A full sheet of 256 columns would take hundreds of megabytes.
  bool keeps(const Place& place) const { return place.row == 0 || wanted_[place.column]; }

  void add(const Place& place, Cell::Kind kind, std::uint32_t value) {
    if (!keeps(place)) return;
    contents_.cells.add({place.row, static_cast<std::uint8_t>(place.column), kind, value});
  }

  void addNumber(const Place& place, double value, Cell::Kind kind = Cell::Kind::Number) {
    if (!keeps(place)) return;
    contents_.numbers.push_back({value, place.format});
    add(place, kind, static_cast<std::uint32_t>(contents_.numbers.size() - 1));
  }

  void addPacked(const Place& place, FieldReader& fields) {
    addNumber(place, unpack(fields.u32()));
  }

  /// Neighbours in one row; the column of the last one follows them.
  void addPackedRow(FieldReader& fields) {
    Place place{fields.u16(), fields.u16(), 0};
    // Format and number of a cell take six bytes; two are left for the last column.
    for (; fields.left() >= 6; ++place.column) {
      place.format = fields.u16();
      addPacked(checked(place), fields);
    }
    checkRowEnd(place, fields);
  }

  void checkBlankRow(FieldReader& fields) const {
    Place place{fields.u16(), fields.u16(), 0};
    for (; fields.left() >= 4; ++place.column) {
      place.format = fields.u16();
      checked(place);
    }
    checkRowEnd(place, fields);
  }

  /// `behind` is the place after the last cell.
  static void checkRowEnd(const Place& behind, FieldReader& fields) {
    if (fields.u16() + 1 != behind.column) damaged("cells of a row are missing");
  }

  void addSharedText(const Place& place, FieldReader& fields) {
    const std::uint32_t text = fields.u32();
    // Not the size of the pool: texts within records are added to it, too.
    if (text >= sharedTexts_) damaged("the text of a cell is missing");
    add(place, Cell::Kind::Text, text);
  }

  /// A text within its own record, after `skipped` bytes. Parts of a length may follow it, preceded
  /// by their count; they say which characters have which font.
  void addText(const Place& place, std::size_t skipped, std::size_t partLength) {
    ContinuedReader reader(records_);
    reader.skip(skipped);
    if (keeps(place)) {
      add(place, Cell::Kind::Text,
          contents_.texts.addWith([&](std::string& to) { reader.appendText(to); }));
    } else {
      std::string unwanted;
      reader.appendText(unwanted);
    }
    if (partLength > 0) reader.skip(reader.u16() * partLength);
    reader.finish();
  }

  /// What tells whether a formula's result was ever calculated. Programs that do not calculate
  /// write 0 or an empty text.
  struct Calculation {
    bool isPending;  ///< it is to be calculated when the workbook is opened
    bool isTraced;   ///< an application that calculates has left its notes
  };

  /// Reads on behind a formula's result, to the record's end.
  static Calculation readCalculation(FieldReader& fields) {
    constexpr unsigned onLoad = 2;
    const bool isPending = (fields.u16() & onLoad) != 0;
    const bool isTraced = fields.u32() != 0;
    const std::string_view tokens = fields.bytes(fields.u16());
    // Only constant arrays, areas in memory and natural-language names have something behind the
    // tokens. The bytes of these kinds may mean something else; without them there is nothing.
    if (tokens.find_first_of("\x18\x20\x40\x60\x26\x46\x66") == std::string_view::npos) {
      fields.finish();
    }
    return {isPending, isTraced};
  }

  /// What a formula came to last. It is a number unless its upper two bytes are ones; then its
  /// lowest byte tells the kind: a text in the next String record, a boolean, an error, or an empty
  /// text.
  void addResult(const Place& place, FieldReader& fields) {
    constexpr std::uint64_t isNoNumber = 0xFFFF;
    constexpr unsigned emptyText = 3;
    const std::uint64_t result = fields.u64();
    const Calculation calculation = readCalculation(fields);
    if (result >> 48U != isNoNumber) {
      const bool unknown = result == 0 && calculation.isPending;
      return addNumber(place, std::bit_cast<double>(result),
                       unknown ? Cell::Kind::NoNumber : Cell::Kind::Number);
    }
    const auto kind = static_cast<std::uint8_t>(result);
    const auto value = static_cast<std::uint8_t>(result >> 16U);
    if (kind == 0) pendingText_ = place;
    if (kind == 1) add(place, Cell::Kind::Boolean, value);
    if (kind == 2) add(place, Cell::Kind::Error, value);
    if (kind == emptyText && !calculation.isTraced) add(place, Cell::Kind::NoResult, 0);
    if (kind > emptyText) damaged("the result of a formula is of no known kind");
  }

  /// A text that is no cell, or nothing.
  void passText() {
    ContinuedReader reader(records_);
    std::string text;
    if (!reader.atEnd()) reader.appendText(text);
    reader.finish();
  }

  void checkPendingText() const {
    if (pendingText_) damaged("the text of a formula is missing");
  }

  RecordReader records_;
  const ColumnSet& wanted_;
  SheetContents& contents_;
  std::size_t sharedTexts_;
  std::optional<Place> pendingText_;
};

}  // namespace

void readSheet(std::string_view stream, std::size_t at, const ColumnSet& wanted,
               SheetContents& contents) {
  SheetReader(stream, at, wanted, contents).read();
}

}  // namespace velk::xls
