#include "tests/tour/seen_text.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "platform/windows/wide_text.h"
#include "tests/tour/host_process.h"
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
constexpr int headerMargin = 7;
constexpr int cellMargin = 6;

// Another process' font cannot be asked: these are the ones that the windows should have.
UniqueFont fontOf(bool isScreen, int dotsPerInch) {
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

bool reachesEdge(const Picture& picture) {
  for (std::size_t i = picture.width - 1; i < picture.pixels.size(); i += picture.width) {
    if (picture.pixels[i] != picture.pixels.front()) return true;
  }
  return false;
}

SIZE extentIn(HFONT font, std::wstring_view text) {
  const UniqueDisplayDc display(GetDC(nullptr));
  const HGDIOBJ before = SelectObject(display.get(), font);
  SIZE size{};
  GetTextExtentPoint32W(display.get(), text.data(), static_cast<int>(text.size()), &size);
  SelectObject(display.get(), before);
  return size;
}

int expectedInk(std::wstring_view text, HFONT font) {
  constexpr int beside = 4;
  const SIZE size = extentIn(font, text);
  const RECT all{0, 0, size.cx + 2 * beside, size.cy};
  return inkWidth(paintedPicture(all.right, all.bottom, [&](HDC dc) {
    const HGDIOBJ before = SelectObject(dc, font);
    ExtTextOutW(dc, beside, 0, ETO_OPAQUE, &all, text.data(), static_cast<UINT>(text.size()),
                nullptr);
    SelectObject(dc, before);
  }));
}

class Room {
 public:
  Room(HWND root, int dotsPerInch, const Picture& now)
      : dotsPerInch_(dotsPerInch),
        now_(now),
        isScreen_(classOf(root) == screenClass),
        font_(fontOf(isScreen_, dotsPerInch)) {}

  void check(HWND control);
  const std::string& cut() const { return cut_; }

 private:
  int scaled(int size) const { return MulDiv(size, dotsPerInch_, usualDotsPerInch); }
  SIZE extent(std::wstring_view text) const { return extentIn(font_.get(), text); }
  void compare(HWND control, std::wstring_view text, SIZE needed, SIZE room);
  void checkText(HWND control, int border, bool hasMnemonic);
  void checkBox(HWND box);
  void checkList(HWND list);
  void checkHeader(HWND list, int column, std::wstring_view title, HFONT font);
  void checkCells(HWND list, int column, HFONT font);
  UniqueFont fontOfList(HWND list) const;

  int dotsPerInch_;
  const Picture& now_;
  bool isScreen_;
  UniqueFont font_;
  std::string cut_;
};

SIZE insideOf(HWND window) {
  RECT inside{};
  GetClientRect(window, &inside);
  return {inside.right, inside.bottom};
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

UniqueFont copyOf(HFONT font, LONG height, LONG weight) {
  LOGFONTW as{};
  GetObjectW(font, sizeof as, &as);
  as.lfHeight = height != 0 ? height : as.lfHeight;
  as.lfWeight = weight != 0 ? weight : as.lfWeight;
  return UniqueFont(CreateFontIndirectW(&as));
}

// The window's own in the size in which a text is as wide as the list says; null where none is.
UniqueFont Room::fontOfList(HWND list) const {
  constexpr std::wstring_view sample = L"Customer Name";
  constexpr int largest = 60;
  const int width = textWidth(list, sample);
  if (extent(sample).cx == width) return copyOf(font_.get(), 0, 0);
  for (int height = 1; height < largest; ++height) {
    UniqueFont font = copyOf(font_.get(), -height, 0);
    if (extentIn(font.get(), sample).cx == width) return font;
  }
  return {};
}

void Room::checkHeader(HWND list, int column, std::wstring_view title, HFONT font) {
  const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  const int width = columnWidth(list, column);
  const LONG height = insideOf(header).cy;
  if (title.empty() || width == 0 || IsWindowVisible(header) == FALSE) return;
  compare(header, title, extentIn(font, title), {width - scaled(headerMargin), height});
  // It may have room for a text and not paint all of it.
  const POINT middle = headerPoint(list, column);
  if (!isScreen_ || WindowFromPoint(middle) != header) return;
  // Without the lines around it, and that of the focus.
  constexpr int inset = 3;
  const int half = width / 2 - inset;
  const LONG up = height / 2 - inset;
  const RECT area{middle.x - half, middle.y - up, middle.x + half, middle.y + up};
  const Picture shown = now_.part(area);
  // Beyond the display nothing is painted.
  if (static_cast<LONG>(shown.width) < area.right - area.left) return;
  const int ink = inkWidth(shown);
  // Where the text goes as far as the lines, its last pixels are on them.
  const int expected = expectedInk(title, font) - (reachesEdge(shown) ? inset : 0);
  if (ink < expected) compare(header, title, {expected, 0}, {ink, 0});
}

// The first row of a screen's mapping list has texts of the screen's own, in bold; all of the
// host's are.
void Room::checkCells(HWND list, int column, HFONT font) {
  constexpr int enoughRows = 40;
  const int room = columnWidth(list, column) - scaled(cellMargin);
  const bool isMapping =
      isScreen_ && childOfClass(GetAncestor(list, GA_ROOT), L"SysListView32", 1) == list;
  const UniqueFont bold = isMapping ? copyOf(font, 0, FW_BOLD) : UniqueFont();
  const int rows = isMapping ? 1 : isScreen_ ? 0 : std::min(rowCount(list), enoughRows);
  if (room <= 0) return;
  for (const std::wstring& cell : cellTexts(list, column, rows)) {
    compare(list, cell, {extentIn(bold ? bold.get() : font, cell).cx, 0}, {room, 0});
  }
}

void Room::checkList(HWND list) {
  const auto titles = columnTitles(list);
  const UniqueFont font = fontOfList(list);
  if (!font) return compare(list, L"a font that is not the window's", {1, 1}, {0, 0});
  for (std::size_t i = 0; i < titles.size(); ++i) {
    checkHeader(list, static_cast<int>(i), titles[i], font.get());
    checkCells(list, static_cast<int>(i), font.get());
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

bool SeenTexts::looksNew(HWND control, const std::vector<HWND>& inFront, const Picture& now) {
  RECT at{};
  GetWindowRect(control, &at);
  const bool isCovered = std::ranges::any_of(inFront, [&](HWND front) {
    RECT area{};
    GetWindowRect(front, &area);
    return IntersectRect(&area, &area, &at) != FALSE;
  });
  Picture look = now.part(at);
  const auto [known, isFirst] = looks_.try_emplace(control);
  // Behind a window only what has never been seen: all else is seen again when that has gone.
  const bool isNew = isFirst || (!isCovered && look != known->second);
  if (isNew) known->second = isCovered ? Picture{} : std::move(look);
  return isNew;
}

std::string SeenTexts::cut(const Picture& now) {
  std::string cut;
  std::vector<HWND> inFront;
  for (const HWND root : host_.all()) {
    const bool isOurs = classOf(root) == screenClass || classOf(root) == hostClass;
    if (isOurs && IsIconic(root) == FALSE) {
      Room room(root, dotsPerInch_, now);
      for (const HWND control : childWindows(root)) {
        if (looksNew(control, inFront, now)) room.check(control);
      }
      cut += room.cut();
    }
    inFront.push_back(root);
  }
  return cut;
}

}  // namespace velk
