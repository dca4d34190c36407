#include "apps/opnimp/sheets/sheet_wire.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include "base/dates.h"
#include "base/text.h"
#include "platform/spreadsheet/little_endian.h"

namespace velk {

namespace {

constexpr std::uint8_t sheetMark = 'S';
constexpr std::uint8_t cellMark = 'C';
constexpr std::uint8_t endMark = 'E';
constexpr std::uint8_t refusalMark = 'F';
constexpr std::uint8_t hiddenBit = 0x80;
/// Many at once, since each piece costs two changes between processes.
constexpr std::size_t pieceLength = std::size_t{1} << 16U;

std::string_view readText(FieldReader& fields) {
  const std::string_view text = fields.bytes(fields.u32());
  if (text.find('\0') != std::string_view::npos || findInvalidUtf8(text) != std::string_view::npos)
    damaged("a text in it is none");
  return text;
}

SheetCell readCell(FieldReader& fields) {
  SheetCell cell;
  const std::uint8_t first = fields.u8();
  cell.isHidden = (first & hiddenBit) != 0;
  const auto kind = static_cast<std::uint8_t>(first & ~hiddenBit);
  if (kind > static_cast<std::uint8_t>(SheetCell::Kind::NoResult)) damaged("a cell is of no kind");
  cell.kind = static_cast<SheetCell::Kind>(kind);
  cell.row = fields.u32();
  cell.column = fields.u32();
  cell.value = fields.number();
  cell.text = readText(fields);
  const bool isInside = cell.row - 1 < mostSheetRows && cell.column - 1 < mostSheetColumns;
  if (!isInside) damaged("a cell lies outside the sheet");
  const bool isDay = cell.kind != SheetCell::Kind::Date || isInCalendar(cell.value);
  if (!std::isfinite(cell.value) || !isDay) damaged("the number of a cell is none");
  return cell;
}

void addCell(std::vector<Sheet>& sheets, const SheetCell& cell) {
  if (sheets.empty()) damaged("a cell is in no sheet");
  std::vector<SheetCell>& cells = sheets.back().cells;
  const bool follows = cells.empty() || cells.back().row < cell.row ||
                       (cells.back().row == cell.row && cells.back().column < cell.column);
  if (!follows) damaged("its cells are not in their order");
  cells.push_back(cell);
}

}  // namespace

void SheetWriter::sheet(std::string_view name, bool isHidden) {
  appendNumber(bytes_, sheetMark);
  appendNumber(bytes_, static_cast<std::uint8_t>(isHidden ? 1 : 0));
  append(name);
}

void SheetWriter::cell(const SheetCell& cell) {
  appendNumber(bytes_, cellMark);
  appendNumber(bytes_, static_cast<std::uint8_t>(static_cast<unsigned>(cell.kind) |
                                                 (cell.isHidden ? hiddenBit : 0U)));
  appendNumber(bytes_, cell.row);
  appendNumber(bytes_, cell.column);
  appendNumber(bytes_, std::bit_cast<std::uint64_t>(cell.value));
  append(cell.text);
  if (bytes_.size() >= pieceLength) flush();
}

void SheetWriter::finish() {
  appendNumber(bytes_, endMark);
  flush();
}

void SheetWriter::refuse(std::string_view why) {
  appendNumber(bytes_, refusalMark);
  append(why);
  flush();
}

void SheetWriter::append(std::string_view text) {
  appendNumber(bytes_, static_cast<std::uint32_t>(text.size()));
  bytes_ += text;
}

void SheetWriter::flush() {
  handBack_(bytes_);
  bytes_.clear();
}

SheetSet readWire(std::string bytes) {
  SheetSet set{std::make_unique<const std::string>(std::move(bytes)), {}};
  FieldReader fields(*set.texts);
  for (;;) {
    const std::uint8_t mark = fields.u8();
    if (mark == endMark) break;
    if (mark == refusalMark) refuse(readText(fields));
    if (mark == sheetMark) {
      const bool isHidden = fields.u8() != 0;
      set.sheets.push_back({std::string(readText(fields)), isHidden, {}});
    } else if (mark == cellMark) {
      addCell(set.sheets, readCell(fields));
    } else {
      damaged("what was read of it is none of it");
    }
  }
  fields.finish();
  if (set.sheets.empty()) refuse("The workbook has no worksheet");
  return set;
}

}  // namespace velk
