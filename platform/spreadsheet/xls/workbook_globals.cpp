#include "platform/spreadsheet/xls/workbook_globals.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/spreadsheet/xls/encryption.h"
#include "platform/spreadsheet/xls/records.h"

namespace velk::xls {

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

namespace {

class GlobalsReader {
 public:
  GlobalsReader(std::string_view stream, SheetContents& contents)
      : stream_(stream), records_(stream, 0), contents_(contents) {}

  std::vector<SheetEntry> read() {
    if (beginSubstream(records_) != substreamGlobals) damaged("its sheets are not listed");
    for (records_.next(); records_.type() != Record::Eof; records_.next()) readRecord();
    // Only now: formats may follow the cell formats that use them.
    for (std::uint16_t& format : contents_.cellFormats) format = positionOf(format);
    checkSheets();
    std::erase_if(sheets_, [](const SheetEntry& sheet) { return !sheet.isWorksheet; });
    if (sheets_.empty()) refuse("The workbook has no worksheet");
    return std::move(sheets_);
  }

 private:
  void readRecord() {
    FieldReader fields(records_.payload());
    ContinuedReader parts(records_);
    switch (records_.type()) {
      case Record::FilePass:
        refuseEncrypted(openingOf(records_.payload()));
      case Record::DateMode:
        contents_.from1904 = fields.u16() != 0;
        break;
      case Record::SharedStrings:
        return readSharedTexts(parts);
      case Record::Font:
        parts.skip(14);  // everything but its name
        return passShortText(parts);
      case Record::Style:
        return passStyle(parts);
      case Record::Format:
        return readFormat(parts);
      case Record::ExtendedFormat:
        fields.skip(2);  // the font
        contents_.cellFormats.push_back(fields.u16());
        break;
      case Record::BoundSheet:
        return readSheetEntry(parts);
      default:
        break;
    }
  }

  [[noreturn]] static void refuseEncrypted(Opening opening) {
    if (opening == Opening::WithPassword) {
      refuse("The workbook opens with a password only; save it without one");
    }
    if (opening == Opening::WithoutPassword) {
      refuse(
          "The structure of the workbook is protected, which encrypts it, though it opens without "
          "a password; take the protection off, and save it again");
    }
    refuse(
        "The workbook is encrypted: it has a password, or its structure is protected, which "
        "encrypts it even if it opens without one; take off both, and save it again");
  }

  static void passShortText(ContinuedReader& reader) {
    std::string text;
    reader.appendShortText(text);
    reader.finish();
  }

  /// A style is one of those that every workbook has, or has a name.
  static void passStyle(ContinuedReader& reader) {
    constexpr unsigned builtIn = 0x8000;
    if ((reader.u16() & builtIn) != 0) {
      reader.skip(2);
    } else {
      std::string name;
      reader.appendText(name);
    }
    reader.finish();
  }

  /// Cells name their texts by position, so that one text too few or too many would give other
  /// rows.
  void readSharedTexts(ContinuedReader& reader) {
    reader.skip(4);  // how often they are used, which programs count differently
    const std::uint32_t count = reader.u32();
    while (!reader.atEnd())
      contents_.texts.addWith([&](std::string& to) { reader.appendText(to); });
    if (contents_.texts.size() != count) damaged("it has other texts than it says");
  }

  void readFormat(ContinuedReader& reader) {
    const std::uint16_t number = reader.u16();
    std::string code;
    reader.appendText(code);
    reader.finish();
    formats_[number] = std::move(code);
  }

  void readSheetEntry(ContinuedReader& reader) {
    constexpr unsigned hidden = 3;  // 1 for users, 2 for macros, too
    const std::uint32_t offset = reader.u32();
    const bool isHidden = (reader.u8() & hidden) != 0;
    SheetEntry& sheet =
        sheets_.emplace_back(SheetEntry{offset, reader.u8() == sheetIsWorksheet, isHidden, {}});
    reader.appendShortText(sheet.name);
    reader.finish();
  }

  /// What the list of sheets says has to agree with what is there: else another sheet could be
  /// taken for one.
  void checkSheets() const {
    for (const SheetEntry& sheet : sheets_) {
      if (std::ranges::count(sheets_, sheet.offset, &SheetEntry::offset) > 1) {
        damaged("two sheets stand in one place");
      }
      if (sheet.offset >= stream_.size()) damaged("a sheet is missing");
      RecordReader begin(stream_, sheet.offset);
      const bool isWorksheet = beginSubstream(begin) == substreamWorksheet;
      if (isWorksheet != sheet.isWorksheet)
        damaged("a sheet is no such as the list of sheets says");
    }
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

  std::string_view stream_;
  RecordReader records_;
  SheetContents& contents_;
  std::map<std::uint16_t, std::string> formats_;
  std::map<std::uint16_t, std::uint16_t> positions_;
  std::vector<SheetEntry> sheets_;
};

}  // namespace

std::vector<SheetEntry> readGlobals(std::string_view stream, SheetContents& contents) {
  return GlobalsReader(stream, contents).read();
}

}  // namespace velk::xls
