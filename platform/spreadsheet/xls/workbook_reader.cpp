#include "platform/spreadsheet/xls/workbook_reader.h"

#include <map>
#include <optional>

#include "platform/spreadsheet/sheet_cells.h"
#include "platform/spreadsheet/xls/records.h"

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

/// Takes the record that a substream begins with; answers the substream's kind.
std::uint16_t beginSubstream(RecordReader& records) {
  records.next();
  const Record type = records.type();
  const bool older = type == Record::Bof2 || type == Record::Bof3 || type == Record::Bof4;
  if (!older && type != Record::Bof) damaged("its records do not begin as they should");
  FieldReader fields(records.payload());
  if (older || fields.u16() != versionBiff8) {
    refuse(
        "The workbook is in the format of version 5.0/95 or older; save it as an Excel 97-2003 "
        "workbook (*.xls)");
  }
  return fields.u16();
}

/// Reads the part of the stream before the sheets: texts and formats that they share.
class GlobalsReader {
 public:
  GlobalsReader(std::string_view stream, SheetContents& contents)
      : records_(stream, 0), contents_(contents) {}

  /// Answers where the first worksheet begins.
  std::size_t read() {
    if (beginSubstream(records_) != substreamGlobals) damaged("its sheets are not listed");
    for (records_.next(); records_.type() != Record::Eof; records_.next()) readRecord();
    // Only now: formats may follow the cell formats that use them.
    for (std::uint16_t& format : contents_.cellFormats) format = positionOf(format);
    if (!firstSheet_) refuse("The workbook has no worksheet");
    return *firstSheet_;
  }

 private:
  void readRecord() {
    FieldReader fields(records_.payload());
    ContinuedReader texts(records_);
    switch (records_.type()) {
      case Record::FilePass:
        refuse("The workbook is protected with a password; save it without one");
      case Record::DateMode:
        contents_.from1904 = fields.u16() != 0;
        break;
      case Record::SharedStrings:
        // How many texts the record claims does not matter, only what is there.
        for (texts.skip(8); !texts.atEnd();) contents_.texts.add(texts);
        break;
      case Record::Format:
        readFormat(texts);
        break;
      case Record::ExtendedFormat:
        // The font.
        fields.skip(2);
        contents_.cellFormats.push_back(fields.u16());
        break;
      case Record::BoundSheet:
        readSheetEntry(fields);
        break;
      default:
        break;
    }
  }

  void readFormat(ContinuedReader& reader) {
    const std::uint16_t number = reader.u16();
    std::string code;
    reader.appendText(code);
    formats_[number] = std::move(code);
  }

  void readSheetEntry(FieldReader fields) {
    const std::uint32_t offset = fields.u32();
    fields.skip(1);  // shown or hidden
    if (fields.u8() == sheetIsWorksheet && !firstSheet_) firstSheet_ = offset;
  }

  /// Formats are made once each, when a cell format uses them: a hostile file could ask for as many
  /// as it has cell formats.
  std::uint16_t positionOf(std::uint16_t number) {
    const auto [entry, isNew] = positions_.try_emplace(number, std::uint16_t{0});
    if (isNew && contents_.formats.size() <= 0xFFFF) {
      entry->second = static_cast<std::uint16_t>(contents_.formats.size());
      const auto found = formats_.find(number);
      contents_.formats.emplace_back(found == formats_.end() ? builtInFormat(number)
                                                             : found->second);
    }
    return entry->second;
  }

  RecordReader records_;
  SheetContents& contents_;
  std::map<std::uint16_t, std::string> formats_;
  std::map<std::uint16_t, std::uint16_t> positions_;
  std::optional<std::size_t> firstSheet_;
};

class SheetReader {
 public:
  SheetReader(std::string_view stream, std::size_t at, SheetContents& contents)
      : records_(stream, at), contents_(contents), sharedTexts_(contents.texts.size()) {}

  void read() {
    if (beginSubstream(records_) != substreamWorksheet) damaged("its first worksheet is no such");
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
      // The runs of fonts that follow its text do not matter.
      case Record::RString:
        return addText(readPlace(fields), placeLength);
      case Record::Rk:
        return addPacked(readPlace(fields), fields);
      case Record::MulRk:
        return addPackedRow(fields);
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
      case Record::Formula:
        // The text of an earlier formula must have come by now.
        checkPendingText();
        return addResult(readPlace(fields), fields);
      case Record::String:
        if (pendingText_) addText(*pendingText_, 0);
        return pendingText_.reset();
      default:
        return;
    }
  }

  static constexpr std::size_t placeLength = 6;
  static Place readPlace(FieldReader& fields) {
    const std::uint16_t row = fields.u16();
    const std::uint16_t column = fields.u16();
    return {row, column, fields.u16()};
  }

  void add(const Place& place, Cell::Kind kind, std::uint32_t value) {
    if (place.column >= maxSheetColumns) damaged("a cell lies outside the sheet");
    contents_.cells.add({place.row, static_cast<std::uint8_t>(place.column), kind, value});
  }

  void addNumber(const Place& place, double value) {
    contents_.numbers.push_back({value, place.format});
    add(place, Cell::Kind::Number, static_cast<std::uint32_t>(contents_.numbers.size() - 1));
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
      addPacked(place, fields);
    }
  }

  void addSharedText(const Place& place, FieldReader& fields) {
    const std::uint32_t text = fields.u32();
    // Not the size of the pool: texts within records are added to it, too.
    if (text >= sharedTexts_) damaged("the text of a cell is missing");
    add(place, Cell::Kind::Text, text);
  }

  /// A text within its own record, after `skipped` bytes.
  void addText(const Place& place, std::size_t skipped) {
    ContinuedReader reader(records_);
    reader.skip(skipped);
    add(place, Cell::Kind::Text, contents_.texts.add(reader));
  }

  /// What a formula came to last. It is a number unless its upper two bytes are ones; then its
  /// lowest byte tells the kind: a text in the next String record, a boolean, an error, or an empty
  /// text, which needs no cell.
  void addResult(const Place& place, FieldReader& fields) {
    constexpr std::uint64_t isNoNumber = 0xFFFF;
    const std::uint64_t result = fields.u64();
    if (result >> 48U != isNoNumber) return addNumber(place, std::bit_cast<double>(result));
    const auto kind = static_cast<std::uint8_t>(result);
    const auto value = static_cast<std::uint8_t>(result >> 16U);
    // 3, the empty text, is not listed.
    if (kind == 0) pendingText_ = place;
    if (kind == 1) add(place, Cell::Kind::Boolean, value);
    if (kind == 2) add(place, Cell::Kind::Error, value);
  }

  void checkPendingText() const {
    if (pendingText_) damaged("the text of a formula is missing");
  }

  RecordReader records_;
  SheetContents& contents_;
  std::size_t sharedTexts_;
  std::optional<Place> pendingText_;
};

}  // namespace

std::string SheetContents::text(std::size_t row, std::size_t column) const {
  const Cell* const cell = cells.find(row, column);
  if (cell == nullptr) return {};
  switch (cell->kind) {
    case Cell::Kind::Text:
      return std::string(texts[cell->value]);
    case Cell::Kind::Boolean:
      return std::string(booleanText(cell->value != 0));
    case Cell::Kind::Error:
      return std::string(cellErrorText(cell->value));
    case Cell::Kind::Blank:
      return {};
    case Cell::Kind::Number:
      break;
  }
  const Number& number = numbers[cell->value];
  const bool known = number.cellFormat < cellFormats.size();
  const NumberFormat& format = formats[known ? cellFormats[number.cellFormat] : 0];
  return format.text(number.value, from1904);
}

SheetContents readWorkbook(std::string_view stream) {
  SheetContents contents;
  const std::size_t sheet = GlobalsReader(stream, contents).read();
  if (sheet >= stream.size()) damaged("its first worksheet is missing");
  SheetReader(stream, sheet, contents).read();
  return contents;
}

}  // namespace velk::xls
