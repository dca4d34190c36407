#include "platform/windows/forms/list_window.h"

#include <algorithm>

#include "base/text.h"
#include "platform/windows/forms/paint_pause.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr DWORD listStyle =
    LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS | WS_TABSTOP;
constexpr DWORD lookAndFeel = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_DOUBLEBUFFER;
constexpr LRESULT nothingFound = -1;

}  // namespace

ListWindow::ListWindow(ListView& list, const ControlPlace& place)
    : ControlWindow(list, place, WC_LISTVIEWW, listStyle, WS_EX_CLIENTEDGE),
      list_(list),
      font_(place.fonts.get()),
      bold_(place.fonts.get(Fonts::standard, true)) {
  SendMessageW(handle(), LVM_SETEXTENDEDLISTVIEWSTYLE, lookAndFeel, lookAndFeel);
  showColours();
  flush();
}

HWND ListWindow::header() const {
  return reinterpret_cast<HWND>(SendMessageW(handle(), LVM_GETHEADER, 0, 0));
}

void ListWindow::propertyChanged(std::string_view property) {
  if (equalsIgnoringCase(property, "BackColor") || equalsIgnoringCase(property, "ForeColor")) {
    showColours();
  }
  ControlWindow::propertyChanged(property);
}

void ListWindow::showColours() {
  const auto back = static_cast<LPARAM>(toColorRef(list_.number("BackColor")));
  SendMessageW(handle(), LVM_SETBKCOLOR, 0, back);
  SendMessageW(handle(), LVM_SETTEXTBKCOLOR, 0, back);
  SendMessageW(handle(), LVM_SETTEXTCOLOR, 0,
               static_cast<LPARAM>(toColorRef(list_.number("ForeColor"))));
}

void ListWindow::flush() {
  if (!needsFlush()) return;
  const Echo echo(*this);
  const auto rows = static_cast<std::size_t>(SendMessageW(handle(), LVM_GETITEMCOUNT, 0, 0));
  if (columnsChanged_ || rows != list_.rowCount()) {
    const PaintPause pause(handle());
    if (columnsChanged_) showColumns();
    showRows();
  } else {
    showRows();
  }
  columnsChanged_ = rowsChanged_ = false;
}

// Invalidates the rows and leaves the header alone. Looking for the selected row goes over all rows
// under Wine, and commonly there is none.
void ListWindow::showRows() {
  SendMessageW(handle(), LVM_SETITEMCOUNT, list_.rowCount(), 0);
  LRESULT selected = -1;
  if (SendMessageW(handle(), LVM_GETSELECTEDCOUNT, 0, 0) > 0) {
    selected = SendMessageW(handle(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                            MAKELPARAM(LVNI_SELECTED, 0));
  }
  list_.userSelect(static_cast<std::size_t>(selected + 1));
}

void ListWindow::showColumns() {
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

void ListWindow::showColumn(std::size_t index, const Column& column) {
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

LRESULT ListWindow::notify(NMHDR& header) {
  switch (header.code) {
    case LVN_GETDISPINFOW:
      giveText(reinterpret_cast<NMLVDISPINFOW&>(header).item);
      return 0;
    case LVN_ODFINDITEMW:
      return nothingFound;
    case LVN_COLUMNCLICK:
      readGeometry();
      list_.userColumnClick(
          static_cast<std::size_t>(reinterpret_cast<NMLISTVIEW&>(header).iSubItem));
      return 0;
    case LVN_ITEMCHANGED:
      selected(reinterpret_cast<NMLISTVIEW&>(header));
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

// The window may ask beyond the model, between a change of it and the flush.
void ListWindow::giveText(LVITEMW& item) const {
  if ((item.mask & LVIF_TEXT) == 0 || item.pszText == nullptr || item.cchTextMax <= 0) return;
  item.pszText[0] = L'\0';
  const std::size_t row = static_cast<std::size_t>(item.iItem) + 1;
  const auto column = static_cast<std::size_t>(item.iSubItem);
  if (item.iItem < 0 || row > list_.rowCount() || column >= list_.columnCount()) return;
  const auto room = static_cast<std::size_t>(item.cchTextMax) - 1;
  // A character is at most four bytes: no more than these can be shown.
  const std::wstring text = toWide(list_.cell(row, column).substr(0, 4 * room));
  item.pszText[text.copy(item.pszText, room)] = L'\0';
}

// The cells of the mapping row that are mapped stand in bold.
LRESULT ListWindow::draw(NMLVCUSTOMDRAW& what) const {
  const std::size_t row = what.nmcd.dwItemSpec + 1;
  switch (what.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      return hasBold(row) ? CDRF_NOTIFYSUBITEMDRAW : CDRF_DODEFAULT;
    case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
      SelectObject(what.nmcd.hdc,
                   isBold(row, static_cast<std::size_t>(what.iSubItem)) ? bold_ : font_);
      return CDRF_NEWFONT;
    default:
      return CDRF_DODEFAULT;
  }
}

bool ListWindow::isBold(std::size_t row, std::size_t column) const {
  return row <= list_.rowCount() && column < list_.columnCount() && list_.isBold(row, column);
}

bool ListWindow::hasBold(std::size_t row) const {
  for (std::size_t column = 0; column < list_.columnCount(); ++column) {
    if (isBold(row, column)) return true;
  }
  return false;
}

void ListWindow::selected(const NMLISTVIEW& change) {
  if (isEcho() || (change.uNewState & LVIS_SELECTED) == 0 || change.iItem < 0) return;
  const auto row = static_cast<std::size_t>(change.iItem) + 1;
  if (row <= list_.rowCount()) list_.userSelect(row);
}

void ListWindow::rightClicked(const NMITEMACTIVATE& click) {
  readGeometry();
  list_.userMouseUp(MouseButton::Right, scale().twips(click.ptAction.x),
                    scale().twips(click.ptAction.y));
}

// Column widths and the scroll position are the user's; the model needs them for a click only.
void ListWindow::readGeometry() {
  const std::size_t columns = std::min(shown_.size(), list_.columnCount());
  for (std::size_t i = 0; i < columns; ++i) {
    const auto width = static_cast<int>(SendMessageW(handle(), LVM_GETCOLUMNWIDTH, i, 0));
    shown_[i].second = width;
    list_.userColumnWidth(i, scale().twips(width, list_.width(i)));
  }
  POINT origin{};
  MapWindowPoints(header(), handle(), &origin, 1);
  list_.userScroll(scale().twips(-origin.x));
}

}  // namespace velk
