#include "apps/host/main_window.h"

#include <commctrl.h>

#include <algorithm>

#include "apps/host/host_resources.h"
#include "base/errors.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr wchar_t className[] = L"OpeningImportHost";
constexpr UINT refreshMessage = WM_APP;
constexpr int margin = 8;
constexpr int lineHeight = 26;
constexpr int buttonWidth = 150;
constexpr int choiceWidth = 230;
// The columns share this width until the list has a size of its own.
constexpr int firstListWidth = 900;

UniqueFont makeFont() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  return UniqueFont(CreateFontIndirectW(&metrics.lfMessageFont));
}

void registerWindowClass(WNDPROC procedure) {
  WNDCLASSEXW type{};
  type.cbSize = sizeof type;
  type.lpfnWndProc = procedure;
  type.hInstance = GetModuleHandleW(nullptr);
  type.hIcon = hostIcon();
  type.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  type.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  type.lpszMenuName = MAKEINTRESOURCEW(HOST_RESOURCE);
  type.lpszClassName = className;
  RegisterClassExW(&type);
}

}  // namespace

HICON hostIcon() {
  return LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(HOST_RESOURCE));
}

MainWindow::MainWindow(Actions actions) : actions_(std::move(actions)), font_(makeFont()) {
  constexpr INITCOMMONCONTROLSEX lists{sizeof(INITCOMMONCONTROLSEX), ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&lists);
  registerWindowClass(procedure);
  // Off the corner where the screens open.
  constexpr RECT at{72, 140, 1012, 700};
  CreateWindowExW(WS_EX_CONTROLPARENT, className, hostTitle, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                  at.left, at.top, at.right - at.left, at.bottom - at.top, nullptr, nullptr,
                  GetModuleHandleW(nullptr), this);
  // The window procedure has set it while the window was made.
  if (handle_ == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
  ShowWindow(handle_, SW_SHOWNORMAL);
  focusButton(0);
}

MainWindow::~MainWindow() {
  if (handle_ != nullptr) DestroyWindow(handle_);
}

int MainWindow::run() {
  const HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(HOST_RESOURCE));
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    // Only keys for this window: the screens take theirs by a hook of their own.
    if (handle_ != nullptr && (TranslateAcceleratorW(handle_, keys, &message) != 0 ||
                               IsDialogMessageW(handle_, &message) != FALSE)) {
      continue;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}

LRESULT CALLBACK MainWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<MainWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->handle_ = window;  // at once: messages come before CreateWindowExW returns
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  try {
    return self->handle(message, wParam, lParam);
  } catch (...) {
    // No exception crosses Windows.
    const std::wstring text = toWide(currentError().description());
    MessageBoxW(window, text.c_str(), hostTitle, MB_ICONERROR);
    return 0;
  }
}

LRESULT MainWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      makeControls();
      return 0;
    case WM_SIZE:
      arrange(LOWORD(lParam), HIWORD(lParam));
      return 0;
    case WM_ACTIVATE:  // back from a screen, which may have posted something
      if (LOWORD(wParam) != WA_INACTIVE) refreshSoon();
      break;
    case refreshMessage:
      refresh();
      return 0;
    case WM_COMMAND:
      command(LOWORD(wParam), HIWORD(wParam));
      return 0;
    case WM_NOTIFY:
      return notify(*reinterpret_cast<NMHDR*>(lParam));
    case WM_DESTROY:
      handle_ = nullptr;  // the destructor must not destroy it again
      PostQuitMessage(0);
      return 0;
    default:
      break;
  }
  return DefWindowProcW(handle_, message, wParam, lParam);
}

void MainWindow::makeControls() {
  const auto make = [this](const wchar_t* type, const wchar_t* text, DWORD style, WORD id) {
    const HWND control = CreateWindowExW(
        0, type, text, style | WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, handle_,
        reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
    return control;
  };
  // The titles come from the menu, so that a button and its menu item always read alike.
  for (WORD id = CUSTOMER_COMMAND; id <= MASTERS_COMMAND; ++id) {
    wchar_t title[32];
    GetMenuStringW(GetMenu(handle_), id, title, static_cast<int>(std::size(title)), MF_BYCOMMAND);
    buttons_.push_back(make(L"BUTTON", title, WS_TABSTOP, id));
  }
  choice_ = make(L"COMBOBOX", L"", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, TABLE_CHOICE);
  list_ = make(WC_LISTVIEWW, L"",
               LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | WS_BORDER | WS_TABSTOP, 0);
  SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
  // SS_NOPREFIX: an ampersand in an error's text has to be shown, and underlines nothing.
  status_ = make(L"STATIC", L"", SS_LEFT | SS_NOPREFIX, 0);
  const auto add = [this](const wchar_t* name) {
    SendMessageW(choice_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
  };
  for (const CompanyTable& table : companyTables()) add(toWide(table.name).c_str());
  add(L"Error log");
  showTable(0);
}

void MainWindow::arrange(int width, int height) const {
  int left = margin;
  const auto place = [&](HWND control, int controlWidth, int controlHeight) {
    SetWindowPos(control, nullptr, left, margin, controlWidth, controlHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    left += controlWidth + margin;
  };
  for (const HWND button : buttons_) place(button, buttonWidth, lineHeight);
  constexpr int droppedHeight = 300;  // a combo box's height includes its list
  // At the right edge, but never over the buttons of a narrow window.
  left = std::max(left, width - choiceWidth - margin);
  place(choice_, choiceWidth, droppedHeight);
  constexpr int listTop = 2 * margin + lineHeight;
  const int statusTop = height - lineHeight + margin / 2;
  SetWindowPos(list_, nullptr, margin, listTop, width - 2 * margin,
               statusTop - listTop - margin / 2, SWP_NOZORDER | SWP_NOACTIVATE);
  SetWindowPos(status_, nullptr, margin, statusTop, width - 2 * margin, lineHeight - margin,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void MainWindow::command(WORD id, WORD code) {
  switch (id) {
    case CUSTOMER_COMMAND:
    case VENDOR_COMMAND:
    case MASTERS_COMMAND:
      // These commands have the order of ImportScreenKind, without gaps.
      return actions_.openImport(static_cast<ImportScreenKind>(id - CUSTOMER_COMMAND));
    case ERROR_LOG_COMMAND:
      return showTable(companyTables().size());
    case REFRESH_COMMAND:
      return refresh();
    case EXIT_COMMAND:
      SendMessageW(handle_, WM_CLOSE, 0, 0);
      return;
    case TABLE_CHOICE:
      if (code != CBN_SELCHANGE) return;
      return showTable(static_cast<std::size_t>(SendMessageW(choice_, CB_GETCURSEL, 0, 0)));
    default:
      return;
  }
}

// The list is virtual: it asks for the text of each cell that it paints.
LRESULT MainWindow::notify(NMHDR& header) {
  if (header.code != LVN_GETDISPINFOW) return 0;
  LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(header).item;
  const auto row = static_cast<std::size_t>(item.iItem);
  const auto column = static_cast<std::size_t>(item.iSubItem);
  if ((item.mask & LVIF_TEXT) == 0 || row >= rows_.size() || column >= rows_[row].size()) return 0;
  const std::wstring text = toWide(rows_[row][column]);
  // One place is for the NUL at the end.
  const std::size_t room = static_cast<std::size_t>(item.cchTextMax) - 1;
  item.pszText[text.copy(item.pszText, room)] = L'\0';
  return 0;
}

void MainWindow::showTable(std::size_t table) {
  static constexpr TableColumn logColumns[] = {{"Line"}};
  shown_ = table;
  SendMessageW(choice_, CB_SETCURSEL, table, 0);
  const auto tables = companyTables();
  if (table < tables.size()) {
    showColumns(tables[table].columns);
  } else {
    showColumns(logColumns);
  }
  refresh();
}

void MainWindow::showColumns(std::span<const TableColumn> columns) {
  // One by one, because a list has no message that removes all its columns.
  while (SendMessageW(list_, LVM_DELETECOLUMN, 0, 0) != FALSE) {
  }
  RECT inside;
  GetClientRect(list_, &inside);
  const int all = inside.right > 0 ? static_cast<int>(inside.right) : firstListWidth;
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM | LVCF_FMT;
  // Without room for the vertical scroll bar, a horizontal one would appear with it.
  column.cx = (all - GetSystemMetrics(SM_CXVSCROLL)) / static_cast<int>(columns.size());
  for (const TableColumn& shown : columns) {
    std::wstring title = toWide(shown.title);
    column.pszText = title.data();
    column.fmt = shown.isAmount ? LVCFMT_RIGHT : LVCFMT_LEFT;
    SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column.iSubItem),
                 reinterpret_cast<LPARAM>(&column));
    ++column.iSubItem;
  }
}

// A table that cannot be read is no reason to stop the program: the status line says why.
void MainWindow::refresh() {
  try {
    rows_ = actions_.rows(shown_);
    say(std::to_wstring(rows_.size()) + L" rows");
  } catch (const RuntimeError& error) {
    rows_.clear();
    say(toWide("This table cannot be read: " + error.description()));
  }
  SendMessageW(list_, LVM_SETITEMCOUNT, rows_.size(), 0);
  InvalidateRect(list_, nullptr, TRUE);
}

// Posted, because an import may be in the middle of its own work when it asks for this.
void MainWindow::refreshSoon() const {
  PostMessageW(handle_, refreshMessage, 0, 0);
}

void MainWindow::focusButton(int element) {
  const auto index = static_cast<std::size_t>(element);
  if (index >= buttons_.size()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
  SetFocus(buttons_[index]);
}

void MainWindow::say(const std::wstring& text) const {
  SetWindowTextW(status_, text.c_str());
}

}  // namespace velk
