#include "apps/host/main_window.h"

#include <commctrl.h>

#include <algorithm>

#include "apps/host/host_output.h"
#include "apps/host/host_resources.h"
#include "base/errors.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr wchar_t className[] = L"OpeningImportHost";
constexpr UINT refreshMessage = WM_APP;
constexpr DWORD windowStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
// Sizes are pixels of a display with 96 dots per inch.
constexpr int twipsPerSize = 15;
constexpr int margin = 8;
constexpr int lineHeight = 26;
constexpr int buttonWidth = 150;
constexpr int labelWidth = 50;
constexpr int choiceWidth = 230;
constexpr int smallestListHeight = 120;
constexpr int besideCellText = 14;
constexpr SIZE firstSize{940, 560};

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
  CreateWindowExW(WS_EX_CONTROLPARENT, className, hostTitle, windowStyle, scaled(72), scaled(140),
                  scaled(firstSize.cx), scaled(firstSize.cy), nullptr, nullptr,
                  GetModuleHandleW(nullptr), this);
  // The window procedure has set it while the window was made.
  if (handle_ == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
  ShowWindow(handle_, SW_SHOWNORMAL);
  focusButton(0);
  // Posted, so that what cannot be read is told as it is later on: over the window.
  PostMessageW(handle_, WM_COMMAND, MAKEWPARAM(TABLE_CHOICE, CBN_SELCHANGE), 0);
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
    showError(window, currentError().description());
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
    case WM_GETMINMAXINFO: {
      const SIZE smallest = smallestSize();
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest.cx, smallest.cy};
      return 0;
    }
    case WM_SYSCOLORCHANGE:  // only top windows are told
      SendMessageW(list_, message, wParam, lParam);
      break;
    case refreshMessage:
      refreshQuietly();
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

int MainWindow::scaled(int size) const {
  return scale_.pixels(size * twipsPerSize);
}

HWND MainWindow::makeControl(const wchar_t* type, const wchar_t* text, DWORD style, WORD id) {
  const HWND control = CreateWindowExW(0, type, text, style | WS_CHILD, 0, 0, 0, 0, handle_,
                                       reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)),
                                       GetModuleHandleW(nullptr), nullptr);
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
  return control;
}

// Screen readers take the name of a box or list from the text that was made before it, shown or
// not.
void MainWindow::makeControls() {
  // The titles come from the menu, so that a button and its menu item always read alike.
  for (WORD id = CUSTOMER_COMMAND; id <= MASTERS_COMMAND; ++id) {
    wchar_t title[32];
    GetMenuStringW(GetMenu(handle_), id, title, static_cast<int>(std::size(title)), MF_BYCOMMAND);
    buttons_.push_back(makeControl(L"BUTTON", title, WS_VISIBLE | WS_TABSTOP, id));
  }
  choiceLabel_ = makeControl(L"STATIC", L"&Table:", WS_VISIBLE | SS_RIGHT | SS_CENTERIMAGE);
  choice_ = makeControl(L"COMBOBOX", L"", WS_VISIBLE | CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP,
                        TABLE_CHOICE);
  listLabel_ = makeControl(L"STATIC", L"", SS_LEFT | SS_NOPREFIX);
  list_ =
      makeControl(WC_LISTVIEWW, L"",
                  WS_VISIBLE | LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | WS_BORDER | WS_TABSTOP);
  SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
  table_.attach(list_, scaled(besideCellText));
  // SS_NOPREFIX: an ampersand in an error's text has to be shown, and underlines nothing.
  status_ = makeControl(L"STATIC", L"", WS_VISIBLE | SS_LEFT | SS_NOPREFIX);
  fillChoice();
}

void MainWindow::fillChoice() const {
  const auto add = [this](const wchar_t* name) {
    SendMessageW(choice_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
  };
  for (const CompanyTable& table : companyTables()) add(toWide(table.name).c_str());
  add(L"Error log");
  SendMessageW(choice_, CB_SETCURSEL, 0, 0);
}

// All of the buttons, the choice and a few rows, but no more than the display has room for.
SIZE MainWindow::smallestSize() const {
  const int buttons = static_cast<int>(buttons_.size()) * (buttonWidth + margin);
  RECT all{0, 0, scaled(margin + buttons + labelWidth + margin + choiceWidth + margin),
           scaled(4 * margin + 2 * lineHeight + smallestListHeight)};
  AdjustWindowRectEx(&all, windowStyle, TRUE, WS_EX_CONTROLPARENT);
  return {std::min<LONG>(all.right - all.left, GetSystemMetrics(SM_CXMAXIMIZED)),
          std::min<LONG>(all.bottom - all.top, GetSystemMetrics(SM_CYMAXIMIZED))};
}

void MainWindow::arrange(int width, int height) const {
  const int gap = scaled(margin);
  const int line = scaled(lineHeight);
  int left = gap;
  const auto place = [&](HWND control, int controlWidth, int controlHeight) {
    SetWindowPos(control, nullptr, left, gap, controlWidth, controlHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    left += controlWidth + gap;
  };
  for (const HWND button : buttons_) place(button, scaled(buttonWidth), line);
  // At the right edge, but never over the buttons where the display is narrow.
  left = std::max(left, width - scaled(labelWidth + choiceWidth) - 2 * gap);
  RECT choice;  // as high as its font makes it
  GetWindowRect(choice_, &choice);
  place(choiceLabel_, scaled(labelWidth), static_cast<int>(choice.bottom - choice.top));
  place(choice_, scaled(choiceWidth), scaled(300));  // a combo box's height includes its list
  const int listTop = 2 * gap + line;
  const int statusTop = height - line + gap / 2;
  SetWindowPos(list_, nullptr, gap, listTop, width - 2 * gap, statusTop - listTop - gap / 2,
               SWP_NOZORDER | SWP_NOACTIVATE);
  SetWindowPos(status_, nullptr, gap, statusTop, width - 2 * gap, line - gap,
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
LRESULT MainWindow::notify(NMHDR& header) const {
  if (header.code == LVN_GETDISPINFOW) {
    table_.giveText(reinterpret_cast<NMLVDISPINFOW&>(header).item);
  }
  return 0;
}

void MainWindow::showTable(std::size_t table) {
  static constexpr TableColumn logColumns[] = {{"Line, the newest first"}};
  shown_ = table;
  SendMessageW(choice_, CB_SETCURSEL, table, 0);
  const auto tables = companyTables();
  const bool isLog = table >= tables.size();
  SetWindowTextW(listLabel_, isLog ? L"Error log" : toWide(tables[table].name).c_str());
  table_.showColumns(isLog ? std::span<const TableColumn>(logColumns) : tables[table].columns);
  refresh();
}

void MainWindow::refresh() {
  try {
    table_.showRows(actions_.rows(shown_));
  } catch (const RuntimeError&) {
    table_.showRows({});
    say(L"This table cannot be read");
    throw;
  }
  say(std::to_wstring(table_.rowCount()) + L" rows");
}

// When the window comes to the front: a message box would bring it there again when it closes.
void MainWindow::refreshQuietly() {
  trapErrors([this] { refresh(); }, [](const RuntimeError&) {});
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
