// Peer of screen_window: a plain program with two lists as large as a screen's, in the same font,
// that shows a file which it has in memory.
//
//   bench_bare_lists WHAT FILE
//     show      virtual lists: columns and number of rows, until all is painted
//     repaint   these lists painted once more, all of them
//     insert    every row inserted, and every cell of it set
//     memory    what each further window takes
#include <windows.h>

#include <commctrl.h>

#include <array>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "bench/measurement.h"
#include "bench/window_measurement.h"

using namespace velk::bench;

namespace {

using Row = std::vector<std::wstring>;
std::vector<Row> rows;  // the titles first

/// Quotes are dropped, and commas within them separate nothing.
Row fieldsOf(const std::string& line) {
  Row fields(1);
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') {
      quoted = !quoted;
    } else if (c == ',' && !quoted) {
      fields.emplace_back();
    } else if (c != '\r') {
      fields.back() += static_cast<wchar_t>(c);
    }
  }
  return fields;
}

void readFile(const char* path) {
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);) rows.push_back(fieldsOf(line));
  require(rows.size() > 1, "the file can't be read");
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == LVN_GETDISPINFOW) {
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(lParam)->item;
    Row& row = rows[static_cast<std::size_t>(item.iItem) + 1];
    const auto column = static_cast<std::size_t>(item.iSubItem);
    if ((item.mask & LVIF_TEXT) != 0 && column < row.size()) item.pszText = row[column].data();
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

struct BareWindow {
  explicit BareWindow(DWORD kind) {
    WNDCLASSW plain{};
    plain.lpfnWndProc = procedure;
    plain.lpszClassName = L"bare";
    plain.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    RegisterClassW(&plain);
    window = CreateWindowExW(0, L"bare", L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 800, 572,
                             nullptr, nullptr, nullptr, nullptr);
    const HFONT font = CreateFontW(-12, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0,
                                   0, 0, 0, L"Arial");
    for (std::size_t i = 0; i < lists.size(); ++i) {
      lists[i] = CreateWindowExW(
          WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"",
          WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | kind, 24,
          i == 0 ? 124 : 326, 744, 176, window, nullptr, nullptr, nullptr);
      SendMessageW(lists[i], WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
      constexpr LPARAM look = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_DOUBLEBUFFER;
      SendMessageW(lists[i], LVM_SETEXTENDEDLISTVIEWSTYLE, look, look);
    }
    ShowWindow(window, SW_SHOW);
    paintAll(window);
  }

  HWND window;
  std::array<HWND, 2> lists{};
};

void setCell(HWND list, UINT message, std::size_t row, std::size_t column) {
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.iItem = static_cast<int>(row) - 1;
  item.iSubItem = static_cast<int>(column);
  item.pszText = rows[row][column].data();
  SendMessageW(list, message, 0, reinterpret_cast<LPARAM>(&item));
}

void insertRows(HWND list) {
  for (std::size_t row = 1; row < rows.size(); ++row) {
    setCell(list, LVM_INSERTITEMW, row, 0);
    for (std::size_t i = 1; i < rows[row].size(); ++i) setCell(list, LVM_SETITEMW, row, i);
  }
}

void fill(HWND list, bool virtually) {
  SendMessageW(list, WM_SETREDRAW, FALSE, 0);
  for (std::size_t i = 0; i < rows[0].size(); ++i) {
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    column.pszText = rows[0][i].data();
    column.cx = 96;
    column.iSubItem = static_cast<int>(i);
    SendMessageW(list, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
  }
  SendMessageW(list, LVM_SETITEMCOUNT, rows.size() - 1, 0);
  if (!virtually) insertRows(list);
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
}

void show(const BareWindow& bare, bool virtually) {
  for (const HWND list : bare.lists) fill(list, virtually);
  paintAll(bare.window);
}

void report(const Stopwatch& watch, const BareWindow& bare) {
  watch.report(static_cast<std::size_t>(SendMessageW(bare.lists[1], LVM_GETITEMCOUNT, 0, 0)));
}

void measureShowing(bool virtually) {
  const BareWindow bare(virtually ? LVS_OWNERDATA : 0);
  Stopwatch watch;
  show(bare, virtually);
  watch.stop();
  report(watch, bare);
}

void measureRepaint() {
  const BareWindow bare(LVS_OWNERDATA);
  show(bare, true);
  Stopwatch watch;
  repaint(bare.window);
  watch.stop();
  report(watch, bare);
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 3, "usage: bench_bare_lists WHAT FILE");
    const std::string_view what = argv[1];
    readFile(argv[2]);
    const INITCOMMONCONTROLSEX lists{sizeof(INITCOMMONCONTROLSEX), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&lists);
    if (what == "memory") {
      const BareWindow first(LVS_OWNERDATA);
      reportMemoryOfEach([] { BareWindow another(LVS_OWNERDATA); });
    } else if (what == "repaint") {
      measureRepaint();
    } else {
      require(what == "show" || what == "insert", "unknown measurement");
      measureShowing(what == "show");
    }
  });
}
