#include "platform/spreadsheet/xls/text_width.h"

namespace velk::xls {

namespace {

constexpr double digitWidth = 556;
constexpr double boldFactor = 1.08;  // an estimate of how much wider the bold letters are

/// Of the characters from the blank to the tilde, in thousandths of the font's size (the metrics of
/// Helvetica, with which Arial agrees).
constexpr unsigned short asciiWidths[] = {
    278,  278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,  // blank to /
    556,  556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,  // 0 to ?
    1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,  // @ to O
    667,  778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,  // P to _
    333,  556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,  // ` to o
    556,  556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584};      // p to ~

/// Of the character that a byte of UTF-8 begins; 0 for its further bytes.
int widthOf(unsigned char byte) {
  constexpr int other = 600;
  constexpr int full = 1000;
  if (byte < 0x80) return byte < ' ' || byte > '~' ? 0 : asciiWidths[byte - ' '];
  if (byte < 0xC0) return 0;
  // 0xE3 begins U+3000, from where on most characters are as wide as they are high.
  return byte < 0xE3 ? other : full;
}

}  // namespace

double widthInDigits(std::string_view text, bool bold) {
  long width = 0;
  for (const char c : text) width += widthOf(static_cast<unsigned char>(c));
  return static_cast<double>(width) / digitWidth * (bold ? boldFactor : 1);
}

}  // namespace velk::xls
