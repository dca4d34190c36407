#include "tests/tour/seen_text.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "platform/windows/wide_text.h"
#include "tests/tour/display_scale.h"
#include "tests/tour/screen_picture.h"
#include "tests/tour/seen_list.h"

namespace velk {

namespace {

constexpr wchar_t hostClass[] = L"OpeningImportHost";
constexpr wchar_t screenClass[] = L"Velk_OpnImp.Form";
constexpr wchar_t frameClass[] = L"Velk_OpnImp.Frame";
// Pixels at 96 dots per inch.
constexpr int buttonBorder = 4;
constexpr int frameIndent = 9;
constexpr int headerMargin = 6;

// Another process' font cannot be asked: these are the ones that the windows should have.
UniqueFont fontOf(bool isScreen, int dotsPerInch, bool bold) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  LOGFONTW font = metrics.lfMessageFont;
  font.lfHeight = MulDiv(font.lfHeight, dotsPerInch, usualDotsPerInch);
  if (isScreen) {
    constexpr int points = 9;
    font = {};
    font.lfHeight = -MulDiv(points, dotsPerInch, 72);
    std::ranges::copy(L"Arial", font.lfFaceName);
  }
  if (bold) font.lfWeight = FW_BOLD;
  return UniqueFont(CreateFontIndirectW(&font));
}

/// From the first to the last column of pixels that differs from the ground, which the upper left
/// corner has; 0 if none does.
int inkWidth(const Picture& picture) {
  std::uint32_t first = picture.width;
  std::uint32_t last = 0;
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    if (picture.pixels[i] == picture.pixels.front()) continue;
    const auto column = static_cast<std::uint32_t>(i % picture.width);
    first = std::min(first, column);
    last = std::max(last, column);
  }
  return first > last ? 0 : static_cast<int>(last - first + 1);
}

/// That of a text in Arial which is as wide as the list's own font makes it; 0 for another font.
int expectedInk(std::wstring_view text, int width) {
  constexpr int smallest = 6;
  constexpr int largest = 60;
  const auto length = static_cast<int>(text.size());
  for (int height = smallest; height < largest; ++height) {
    const UniqueFont font(
        CreateFontW(-height, 0, 0, 0, 0, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Arial"));
    SIZE size{};
    const Picture painted = paintedPicture(2 * width, 2 * largest, [&](HDC dc) {
      const RECT all{0, 0, 2 * width, 2 * largest};
      const HGDIOBJ before = SelectObject(dc, font.get());
      GetTextExtentPoint32W(dc, text.data(), length, &size);
      ExtTextOutW(dc, 2, 2, ETO_OPAQUE, &all, text.data(), static_cast<UINT>(length), nullptr);
      SelectObject(dc, before);
    });
    if (size.cx == width) return inkWidth(painted);
  }
  return 0;
}

class Room {
 public:
  Room(HWND root, int dotsPerInch)
      : dotsPerInch_(dotsPerInch),
        isScreen_(classOf(root) == screenClass),
        plain_(fontOf(isScreen_, dotsPerInch, false)),
        bold_(fontOf(isScreen_, dotsPerInch, true)) {}

  void check(HWND control);
  const std::string& cut() const { return cut_; }

 private:
  int scaled(int size) const { return MulDiv(size, dotsPerInch_, usualDotsPerInch); }
  SIZE extent(std::wstring_view text, bool bold = false) const;
  void compare(HWND control, std::wstring_view text, SIZE needed, SIZE room);
  void checkText(HWND control, int border, bool hasMnemonic);
  void checkBox(HWND box);
  void checkList(HWND list);
  void checkColumn(HWND list, int column, std::wstring_view title);
  void checkInk(HWND list, int column, std::wstring_view title);

  int dotsPerInch_;
  bool isScreen_;
  UniqueFont plain_;
  UniqueFont bold_;
  std::string cut_;
};

SIZE insideOf(HWND window) {
  RECT inside{};
  GetClientRect(window, &inside);
  return {inside.right, inside.bottom};
}

SIZE Room::extent(std::wstring_view text, bool bold) const {
  const UniqueDisplayDc display(GetDC(nullptr));
  const HGDIOBJ before = SelectObject(display.get(), (bold ? bold_ : plain_).get());
  SIZE size{};
  GetTextExtentPoint32W(display.get(), text.data(), static_cast<int>(text.size()), &size);
  SelectObject(display.get(), before);
  return size;
}

void Room::compare(HWND control, std::wstring_view text, SIZE needed, SIZE room) {
  if (needed.cx <= room.cx && needed.cy <= room.cy) return;
  const auto size = [](SIZE of) { return std::to_string(of.cx) + " x " + std::to_string(of.cy); };
  cut_ += "\n" + textShown(control) + ": \"" + fromWide(text) + "\" of " + size(needed) + " in " +
          size(room);
}

void Room::checkText(HWND control, int border, bool hasMnemonic) {
  std::wstring text = textOf(control);
  if (hasMnemonic) std::erase(text, L'&');
  SIZE room = insideOf(control);
  room.cx -= 2 * scaled(border);
  if (!text.empty()) compare(control, text, extent(text), room);
}

// The chosen text, and each one of the list.
void Room::checkBox(HWND box) {
  const COMBOBOXINFO parts = partsOf(box);
  const SIZE room{parts.rcItem.right - parts.rcItem.left, parts.rcItem.bottom - parts.rcItem.top};
  const auto items = static_cast<WPARAM>(SendMessageW(box, CB_GETCOUNT, 0, 0));
  for (WPARAM i = 0; i < items; ++i) {
    std::array<wchar_t, 256> item{};
    SendMessageW(box, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(item.data()));
    compare(box, item.data(), extent(item.data()), room);
  }
}

void Room::checkColumn(HWND list, int column, std::wstring_view title) {
  const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  const int width = columnWidth(list, column);
  const LONG height = insideOf(header).cy;
  if (width == 0 || !IsWindowVisible(header)) return;
  const auto room = [&](int margin) { return SIZE{width - scaled(margin), height}; };
  const LONG lineHeight = extent(title).cy;
  compare(header, title, {textWidth(list, title), lineHeight}, room(2 * headerMargin));
  if (isScreen_) checkInk(list, column, title);
  // The first row of a screen's mapping list has texts of the screen's own; all of the host's are.
  const bool isMapping =
      isScreen_ && childOfClass(GetAncestor(list, GA_ROOT), L"SysListView32", 1) == list;
  const int rows = isMapping ? 1 : isScreen_ ? 0 : std::min(rowCount(list), 40);
  for (int row = 0; row < rows; ++row) {
    const std::wstring cell = cellText(list, row, column);
    const int needed = isMapping ? extent(cell, true).cx : textWidth(list, cell);
    compare(list, cell, {needed, 0}, room(headerMargin));
  }
}

// A header may have room for a text and not paint all of it.
void Room::checkInk(HWND list, int column, std::wstring_view title) {
  const POINT middle = headerPoint(list, column);
  const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  if (title.empty() || WindowFromPoint(middle) != header) return;
  // Without the lines between the columns and below them.
  const int half = columnWidth(list, column) / 2 - 2;
  const LONG up = insideOf(header).cy / 2 - 2;
  const int ink =
      inkWidth(displayedIn({middle.x - half, middle.y - up, middle.x + half, middle.y + up}));
  const int expected = expectedInk(title, textWidth(list, title));
  if (ink < expected) compare(header, title, {expected, 0}, {ink, 0});
}

void Room::checkList(HWND list) {
  const auto titles = columnTitles(list);
  for (std::size_t i = 0; i < titles.size(); ++i) {
    checkColumn(list, static_cast<int>(i), titles[i]);
  }
}

void Room::check(HWND control) {
  const std::wstring type = classOf(control);
  if (type == L"Button") return checkText(control, buttonBorder, true);
  if (type == L"Static") return checkText(control, 0, !isScreen_);
  if (type == frameClass) return checkText(control, frameIndent, false);
  if (type == L"ComboBox") return checkBox(control);
  if (type == L"SysListView32") return checkList(control);
  if (type == L"Edit") compare(control, textOf(control), {0, extent(L"X").cy}, insideOf(control));
}

}  // namespace

std::string cutTexts(const SeenWindows& host, int dotsPerInch) {
  std::string cut;
  for (const HWND root : host.all()) {
    if (classOf(root) != screenClass && classOf(root) != hostClass) continue;
    if (IsIconic(root) != FALSE) continue;
    Room room(root, dotsPerInch);
    for (const HWND control : childWindows(root)) room.check(control);
    cut += room.cut();
  }
  return cut;
}

}  // namespace velk
