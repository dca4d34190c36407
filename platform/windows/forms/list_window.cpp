#include "platform/windows/forms/window_factory.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/windows/forms/header_window.h"
#include "platform/windows/forms/paint_pause.h"
#include "platform/windows/forms/tooltip.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr DWORD listStyle =
    LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS | WS_TABSTOP;
constexpr DWORD lookAndFeel = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_DOUBLEBUFFER;
constexpr LRESULT nothingFound = -1;

class ListWindow final : public ControlWindow {
 public:
  ListWindow(ListView& list, const ControlPlace& place)
      : ControlWindow(list, place, WC_LISTVIEWW, listStyle, WS_EX_CLIENTEDGE),
        list_(list),
        header_(headerOf(handle()), place.scale, headerLook(place)),
        tooltip_({handle(), header_.handle()}) {
    SendMessageW(handle(), LVM_SETEXTENDEDLISTVIEWSTYLE, lookAndFeel, lookAndFeel);
    showColors();
    tooltip_.setText(list_.text(Property::ToolTipText));
    flush();
  }

  /// What the model says of columns and rows goes to the window with the next flush: while a file
  /// is viewed it says thousands of things.
  void propertyChanged(Property property) override {
    switch (property) {
      case Property::Columns:
        columnsChanged_ = true;
        return;
      case Property::Rows:
        rowsChanged_ = true;
        return;
      case Property::ChosenColumn:
        if (const auto chosen = list_.chosenColumn()) {
          header_.tell(EVENT_OBJECT_SELECTION, static_cast<int>(*chosen));
        }
        return header_.paintAnew();
      case Property::ToolTipText:
        return tooltip_.setText(list_.text(Property::ToolTipText));
      case Property::BackColor:
      case Property::ForeColor:
        showColors();
        break;
      default:
        break;
    }
    ControlWindow::propertyChanged(property);
  }

  // Notifications of the header arrive here, too: the list passes them on.
  LRESULT notify(NMHDR& header) override {
    switch (header.code) {
      case LVN_GETDISPINFOW:
        giveText(reinterpret_cast<NMLVDISPINFOW&>(header).item);
        return 0;
      case LVN_ODFINDITEMW:  // typing in the list selects nothing
        return nothingFound;
      case LVN_COLUMNCLICK:
        current_ = reinterpret_cast<NMLISTVIEW&>(header).iSubItem;
        clickCurrent();
        return 0;
      case NM_SETFOCUS:
      case NM_KILLFOCUS:
        header_.paintAnew();  // the focus rectangle comes or goes
        return 0;
      case NM_RCLICK:
        if (header.hwndFrom == handle()) {
          rightClicked(reinterpret_cast<NMITEMACTIVATE&>(header).ptAction.x);
        }
        return 0;
      case NM_CUSTOMDRAW:
        return header.hwndFrom == handle() ? draw(reinterpret_cast<NMLVCUSTOMDRAW&>(header))
                                           : CDRF_DODEFAULT;
      default:
        return 0;
    }
  }

  bool keyDown(WPARAM key, std::int16_t shift) override {
    constexpr std::int16_t shiftAlone = 1;
    if ((key == VK_APPS && shift == 0) || (key == VK_F10 && shift == shiftAlone)) {
      openMenu();
      return true;
    }
    if (shift != 0 || shown_.empty()) return false;
    switch (key) {
      case VK_LEFT:
        moveCurrent(-1);
        return true;
      case VK_RIGHT:
        moveCurrent(1);
        return true;
      case VK_RETURN:
        clickCurrent();
        return true;
      default:
        return false;
    }
  }
  std::optional<POINT> menuPlace() const override { return menuPlace_; }

  // Painting is paused only where more than the rows' texts changes: a pause paints all of the list
  // anew, while a new count alone leaves the header as it is.
  void flush() override {
    if (!needsFlush()) return;
    const auto rows = static_cast<std::size_t>(SendMessageW(handle(), LVM_GETITEMCOUNT, 0, 0));
    std::optional<PaintPause> pause;
    if (columnsChanged_ || rows != list_.rowCount()) pause.emplace(handle());
    if (columnsChanged_) showColumns();
    SendMessageW(handle(), LVM_SETITEMCOUNT, list_.rowCount(), 0);  // makes the rows be drawn anew
    columnsChanged_ = rowsChanged_ = false;
  }

  bool needsFlush() const override { return columnsChanged_ || rowsChanged_; }

 private:
  using Column = std::pair<std::string, int>;  ///< title, width in pixels

  void showColumns() {
    // From the last one on, so that the positions of the others stay right.
    while (shown_.size() > list_.columnCount()) {
      shown_.pop_back();
      SendMessageW(handle(), LVM_DELETECOLUMN, shown_.size(), 0);
    }
    if (current_ >= static_cast<int>(list_.columnCount())) current_ = 0;
    for (std::size_t i = 0; i < list_.columnCount(); ++i) {
      const Column column{list_.title(i), scale().pixels(list_.width(i))};
      if (i >= shown_.size() || shown_[i] != column) showColumn(i, column);
    }

    // Wine does not paint a header without columns.
    const LONG_PTR style = GetWindowLongPtrW(handle(), GWL_STYLE);
    const LONG_PTR hidden = shown_.empty() ? LVS_NOCOLUMNHEADER : 0;
    if ((style & LVS_NOCOLUMNHEADER) != hidden) {
      SetWindowLongPtrW(handle(), GWL_STYLE, style ^ LVS_NOCOLUMNHEADER);
    }
  }

  void showColumn(std::size_t index, const Column& column) {
    std::wstring title = toWide(column.first);
    LVCOLUMNW entry{};
    entry.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    entry.pszText = title.data();
    entry.cx = column.second;
    entry.iSubItem = static_cast<int>(index);
    const bool isNew = index >= shown_.size();
    SendMessageW(handle(), isNew ? LVM_INSERTCOLUMNW : LVM_SETCOLUMNW, index,
                 reinterpret_cast<LPARAM>(&entry));
    if (isNew) shown_.emplace_back();
    shown_[index] = column;
  }

  void showColors() const {
    const auto back = static_cast<LPARAM>(toColorRef(list_.number(Property::BackColor)));
    SendMessageW(handle(), LVM_SETBKCOLOR, 0, back);
    // The cells of texts have a background of their own.
    SendMessageW(handle(), LVM_SETTEXTBKCOLOR, 0, back);
    SendMessageW(handle(), LVM_SETTEXTCOLOR, 0,
                 static_cast<LPARAM>(toColorRef(list_.number(Property::ForeColor))));
  }

  // The window may ask beyond the model, between a change of it and the flush.
  void giveText(LVITEMW& item) const {
    if ((item.mask & LVIF_TEXT) == 0 || item.pszText == nullptr || item.cchTextMax <= 0) return;
    // First, so that a cell beyond the model shows as empty.
    item.pszText[0] = L'\0';
    const std::size_t row = static_cast<std::size_t>(item.iItem) + 1;
    const auto column = static_cast<std::size_t>(item.iSubItem);
    if (item.iItem < 0 || row > list_.rowCount() || column >= list_.columnCount()) return;
    const auto room = static_cast<std::size_t>(item.cchTextMax) - 1;
    // A character is at most four bytes: no more than these can be shown.
    const std::wstring text = toWide(list_.cell(row, column).substr(0, 4 * room));
    item.pszText[text.copy(item.pszText, room)] = L'\0';
  }

  // Mapped cells of the mapping row are bold, so other rows need no drawing of ours.
  LRESULT draw(NMLVCUSTOMDRAW& what) const {
    // The model's rows count from 1.
    const std::size_t row = what.nmcd.dwItemSpec + 1;
    switch (what.nmcd.dwDrawStage) {
      case CDDS_PREPAINT:
        return CDRF_NOTIFYITEMDRAW;
      case CDDS_ITEMPREPAINT:
        return hasBold(row) ? CDRF_NOTIFYSUBITEMDRAW : CDRF_DODEFAULT;
      case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
        SelectObject(what.nmcd.hdc, isBold(row, static_cast<std::size_t>(what.iSubItem))
                                        ? fonts().of(list_, true)
                                        : font());
        return CDRF_NEWFONT;
      default:
        return CDRF_DODEFAULT;
    }
  }

  bool isBold(std::size_t row, std::size_t column) const {
    return row <= list_.rowCount() && column < list_.columnCount() && list_.isBold(row, column);
  }

  HeaderLook headerLook(const ControlPlace& place) {
    return {.title =
                [this](int column) {
                  const auto index = static_cast<std::size_t>(column);
                  return index < shown_.size() ? shown_[index].first : std::string();
                },
            .chosen =
                [this] {
                  const auto chosen = list_.chosenColumn();
                  return chosen ? std::optional(static_cast<int>(*chosen)) : std::nullopt;
                },
            .current =
                [this] { return GetFocus() == handle() ? std::optional(current_) : std::nullopt; },
            .rightClicked =
                [this](POINT at) {
                  MapWindowPoints(header_.handle(), handle(), &at, 1);
                  rightClicked(at.x);
                },
            .keep = place.keep};
  }

  bool hasBold(std::size_t row) const {
    for (std::size_t column = 0; column < list_.columnCount(); ++column) {
      if (isBold(row, column)) return true;
    }
    return false;
  }

  void rightClicked(int x) {
    readGeometry();
    list_.userMouseUp(MouseButton::Right, scale().twips(x));
  }

  // The current column is the keyboard's place in the header.

  void clickCurrent() {
    readGeometry();
    header_.paintAnew();
    list_.userColumnClick(static_cast<std::size_t>(current_));
  }

  // Past columns without a width, which nobody sees.
  void moveCurrent(int step) {
    const auto isColumn = [&](int c) {
      return c >= 0 && static_cast<std::size_t>(c) < shown_.size();
    };
    const auto isHidden = [&](int c) {
      const RECT place = header_.placeOf(c);
      return place.right <= place.left;
    };
    int next = current_ + step;
    while (isColumn(next) && isHidden(next)) next += step;
    if (!isColumn(next)) return;
    current_ = next;
    scrollToCurrent();
    header_.paintAnew();
    header_.tell(EVENT_OBJECT_FOCUS, current_);
  }

  RECT currentPlace() const {
    RECT place = header_.placeOf(current_);
    MapWindowPoints(header_.handle(), handle(), reinterpret_cast<POINT*>(&place), 2);
    return place;
  }

  void scrollToCurrent() const {
    const RECT place = currentPlace();
    RECT seen;
    GetClientRect(handle(), &seen);
    const LONG behind = std::min(place.left, std::max(0L, place.right - seen.right));
    SendMessageW(handle(), LVM_SCROLL, static_cast<WPARAM>(place.left < 0 ? place.left : behind),
                 0);
  }

  void openMenu() {
    if (shown_.empty()) return;
    scrollToCurrent();
    const RECT place = currentPlace();
    POINT below{place.left, place.bottom};
    ClientToScreen(handle(), &below);
    // Not for a later menu, however this one ends.
    const std::unique_ptr<std::optional<POINT>, void (*)(std::optional<POINT>*)> shownHere(
        &menuPlace_, [](std::optional<POINT>* shown) { shown->reset(); });
    menuPlace_ = below;
    rightClicked((place.left + place.right) / 2);
  }

  // Column widths and the scroll position are the user's; the model needs them for a click only.
  void readGeometry() {
    const std::size_t columns = std::min(shown_.size(), list_.columnCount());
    for (std::size_t i = 0; i < columns; ++i) {
      const auto width = static_cast<int>(SendMessageW(handle(), LVM_GETCOLUMNWIDTH, i, 0));
      shown_[i].second = width;
      list_.userColumnWidth(i, scale().twips(width, list_.width(i)));
    }
    // The header moves to the left as the list scrolls, so its place tells how far.
    POINT origin{};
    MapWindowPoints(header_.handle(), handle(), &origin, 1);
    list_.userScroll(scale().twips(-origin.x));
  }

  static HWND headerOf(HWND list) {
    return reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  }

  ListView& list_;
  HeaderWindow header_;
  Tooltip tooltip_;
  std::vector<Column> shown_;
  int current_ = 0;
  std::optional<POINT> menuPlace_;  ///< while a key opens the menu
  bool columnsChanged_ = true;
  bool rowsChanged_ = true;
};

}  // namespace

std::unique_ptr<ControlWindow> makeListWindow(ListView& list, const ControlPlace& place) {
  return std::make_unique<ListWindow>(list, place);
}

}  // namespace velk
