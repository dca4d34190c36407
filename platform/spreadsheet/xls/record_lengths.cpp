#include "platform/spreadsheet/xls/records.h"

#include <algorithm>
#include <iterator>

namespace velk::xls {

namespace {

/// From `least` on in steps, as far as `most`; a step of 0 is for a single length.
struct Lengths {
  std::uint16_t type;
  std::uint16_t least;
  std::uint16_t most;
  std::uint16_t step;
};

constexpr std::uint16_t limit = maxRecordLength;

constexpr Lengths fixed(unsigned type, unsigned length) {
  const auto only = static_cast<std::uint16_t>(length);
  return {static_cast<std::uint16_t>(type), only, only, 0};
}

/// A front, and any number of equal parts.
constexpr Lengths listed(unsigned type, unsigned front, unsigned part) {
  return {static_cast<std::uint16_t>(type), static_cast<std::uint16_t>(front), limit,
          static_cast<std::uint16_t>(part)};
}

constexpr Lengths cell(Record type, unsigned value) {
  constexpr unsigned rowColumnAndFormat = 6;
  return fixed(static_cast<unsigned>(type), rowColumnAndFormat + value);
}

// All that may stand before the cells or among them, in the order of their numbers: what is longer
// than it should be swallows whole records, so that the rest still looks as it should.
constexpr Lengths table[] = {
    fixed(0x000A, 0),      // the end of a substream
    fixed(0x000C, 2),      // iterations of a calculation
    fixed(0x000D, 2),      // its mode
    fixed(0x000E, 2),      // its precision
    fixed(0x000F, 2),      // how cells are named
    fixed(0x0010, 8),      // the change that ends iterations
    fixed(0x0011, 2),      // whether there are any
    fixed(0x0012, 2),      // protection
    fixed(0x0013, 2),      // its password
    fixed(0x0019, 2),      // protection of windows
    listed(0x001A, 2, 6),  // page breaks between columns
    listed(0x001B, 2, 6),  // and between rows
    fixed(0x0022, 2),      // where dates count from
    fixed(0x0026, 8),      // the margin to the left
    fixed(0x0027, 8),      // to the right
    fixed(0x0028, 8),      // at the top
    fixed(0x0029, 8),      // at the bottom
    fixed(0x002A, 2),      // headers are printed
    fixed(0x002B, 2),      // the grid is printed
    fixed(0x003D, 18),     // the window
    fixed(0x0040, 2),      // backups
    fixed(0x0042, 2),      // the code page
    fixed(0x0055, 2),      // the usual width of columns
    fixed(0x005C, 112),    // the last user
    fixed(0x005E, 2),      // calculation was pending
    fixed(0x005F, 2),      // calculation before saving
    fixed(0x0063, 2),      // protection of objects
    {0x007D, 10, 12, 1},   // columns; some programs leave out what is reserved
    fixed(0x0080, 8),      // outlines
    fixed(0x0081, 2),      // options of the sheet
    fixed(0x0082, 2),      // the grid was set
    fixed(0x0083, 2),      // centred from side to side
    fixed(0x0084, 2),      // and from top to bottom
    fixed(0x008C, 4),      // countries
    fixed(0x008D, 2),      // objects are hidden
    listed(0x0092, 2, 4),  // colours
    fixed(0x009C, 2),      // groups of functions
    fixed(0x00A1, 34),     // the printer
    listed(0x00BD, 6, 6),  // numbers side by side
    listed(0x00BE, 6, 2),  // blank cells side by side
    fixed(0x00C1, 2),      // menus
    listed(0x00D7, 4, 2),  // where the cells of rows stand
    fixed(0x00DA, 2),      // options of the workbook
    fixed(0x00DD, 2),      // protection of scenarios
    fixed(0x00E0, 20),     // formats of cells
    fixed(0x00E1, 2),      // the user interface
    fixed(0x00E2, 0),      // its end
    cell(Record::LabelSst, 4), listed(0x00FF, 2, 8),  // where the shared texts stand
    listed(0x013D, 0, 2),                             // numbers of the sheets
    fixed(0x0160, 2),                                 // formulas in natural language
    fixed(0x0161, 2),                                 // a second version in the file
    fixed(0x01AF, 2),                                 // protection of shared workbooks
    fixed(0x01B7, 2),                                 // data are asked for anew
    fixed(0x01BC, 2),                                 // the password of sharing
    fixed(0x01C0, 0),                                 // a later version wrote it
    fixed(0x01C1, 8),                                 // calculated by a version
    fixed(0x0200, 14),                                // dimensions
    cell(Record::Blank, 0),    cell(Record::Number, 8),
    cell(Record::BoolErr, 2),  fixed(0x0208, 16),   // a row
    listed(0x020B, 16, 4),                          // where the rows stand
    fixed(0x0225, 4),                               // the usual height of rows
    cell(Record::Rk, 4),       {0x0809, 8, 16, 8},  // the beginning of a substream; older programs
                                                    // cut it
};

static_assert(std::ranges::is_sorted(table, {}, &Lengths::type));

}  // namespace

void checkLength(Record type, std::size_t length) {
  constexpr std::string_view impossible = "a record has a length that it cannot have";
  if (length > maxRecordLength) damaged(impossible);
  const auto found =
      std::ranges::lower_bound(table, static_cast<std::uint16_t>(type), {}, &Lengths::type);
  if (found == std::end(table) || found->type != static_cast<std::uint16_t>(type)) return;
  const bool fits = length >= found->least && length <= found->most &&
                    (found->step == 0 || (length - found->least) % found->step == 0);
  if (!fits) damaged(impossible);
}

}  // namespace velk::xls
