#include "platform/windows/forms/window_factory.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/windows/forms/paint_pause.h"
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
        bold_(place.fonts.get(Fonts::standard, true)) {
    SendMessageW(handle(), LVM_SETEXTENDEDLISTVIEWSTYLE, lookAndFeel, lookAndFeel);
    showColors();
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
        readGeometry();
        list_.userColumnClick(
            static_cast<std::size_t>(reinterpret_cast<NMLISTVIEW&>(header).iSubItem));
        return 0;
      case NM_RCLICK:
        if (header.hwndFrom == handle()) rightClicked(reinterpret_cast<NMITEMACTIVATE&>(header));
        return 0;
      case NM_CUSTOMDRAW:
        return header.hwndFrom == handle() ? draw(reinterpret_cast<NMLVCUSTOMDRAW&>(header))
                                           : CDRF_DODEFAULT;
      default:
        return 0;
    }
  }

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
        SelectObject(what.nmcd.hdc,
                     isBold(row, static_cast<std::size_t>(what.iSubItem)) ? bold_ : font());
        return CDRF_NEWFONT;
      default:
        return CDRF_DODEFAULT;
    }
  }

  bool isBold(std::size_t row, std::size_t column) const {
    return row <= list_.rowCount() && column < list_.columnCount() && list_.isBold(row, column);
  }

  bool hasBold(std::size_t row) const {
    for (std::size_t column = 0; column < list_.columnCount(); ++column) {
      if (isBold(row, column)) return true;
    }
    return false;
  }

  void rightClicked(const NMITEMACTIVATE& click) {
    readGeometry();
    list_.userMouseUp(MouseButton::Right, scale().twips(click.ptAction.x));
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
    MapWindowPoints(header(), handle(), &origin, 1);
    list_.userScroll(scale().twips(-origin.x));
  }

  HWND header() const {
    return reinterpret_cast<HWND>(SendMessageW(handle(), LVM_GETHEADER, 0, 0));
  }

  ListView& list_;
  HFONT bold_;
  std::vector<Column> shown_;
  bool columnsChanged_ = true;
  bool rowsChanged_ = true;
};

}  // namespace

std::unique_ptr<ControlWindow> makeListWindow(ListView& list, const ControlPlace& place) {
  return std::make_unique<ListWindow>(list, place);
}

}  // namespace velk
