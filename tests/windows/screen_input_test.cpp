// Screens under a real mouse and a real keyboard.
#include <windows.h>

#include <functional>
#include <string>

#include "platform/windows/windows_desktop.h"
#include "tests/windows/input_screen.h"

namespace velk {
namespace {

RECT placeOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return place;
}

TEST_CASE("windows: the types' list opens by its arrow, and a click chooses") {
  const InputScreen in(masterScreen);
  const HWND box = in.ofClass(L"ComboBox");
  COMBOBOXINFO parts{};
  parts.cbSize = sizeof parts;
  REQUIRE(GetComboBoxInfo(box, &parts) != FALSE);
  for (const WPARAM item : {2U, 1U}) {
    CAPTURE(item);
    sendClick(box, parts.rcButton);
    CHECK(pumpUntil([&] { return IsWindowVisible(parts.hwndList) != FALSE; }));
    RECT place{};
    SendMessageW(parts.hwndList, LB_GETITEMRECT, item, reinterpret_cast<LPARAM>(&place));
    RECT shown{};
    GetClientRect(parts.hwndList, &shown);
    CHECK(place.bottom <= shown.bottom);
    sendClick(parts.hwndList, place);
    CHECK(pumpUntil([&] { return IsWindowVisible(parts.hwndList) == FALSE; }));
    pump();
    const std::string captions[] = {"", "Import - Vendor", "Import - Salesman"};
    CHECK(textOf(in.window.handle) == captions[item]);
  }
}

constexpr const char* oneRecord = "Customer ID,Bill Amount,Balance\r\nC1,100,60\r\n";

void CALLBACK dismiss(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND box = FindWindowW(L"#32770", nullptr);
  if (box == nullptr) return;
  KillTimer(nullptr, timer);
  SetWindowTextW(box, L"seen");
  PostMessageW(box, WM_COMMAND, IDOK, 0);
}

TEST_CASE("windows: keys and clicks that came in during a run are gone when it ends") {
  for (const bool isSilent : {false, true}) {
    CAPTURE(isSilent);
    InputScreen in(customerScreen);
    in.world.database->answerRows("select count(*) from Customer where CustomerID=N'",
                                  {{isSilent ? 1 : 0}});
    in.world.view(*in.screen, oneRecord);
    pump();
    bool closes = false;
    in.world.database->onCall = [&](const FakeCall& call) {
      if (!call.text.starts_with("select count")) return;
      sendPress(VK_RETURN);
      sendClick(in.window.button("C&lose"));
      closes = true;
    };
    ULONGLONG shown = 0;
    in.world.onMessage = [&] {
      const ULONGLONG start = GetTickCount64();
      SetTimer(nullptr, 0, 300, dismiss);
      WindowsDesktop().messageBox(in.world.messages.back(), 0);
      shown = GetTickCount64() - start;
    };
    sendPress('I', true);
    REQUIRE(pumpUntil([&] { return closes; }));
    pumpFor(200);
    CHECK(in.screen->isOpen());
    CHECK(in.world.messages.size() == (isSilent ? 0 : 1));
    CHECK((isSilent || shown >= 290));
    CHECK(GetFocus() == in.ofClass(L"Edit"));
  }
}

TEST_CASE("windows: so they are when a file is viewed or salesmen are exported") {
  InputScreen in(masterScreen);
  chooseSalesmen(in.window);
  in.world.desktop.chooseFile("out.xls");
  in.screen->cmdview.setEnabled(true);
  for (const char* work : {"&View", "&Export DS"}) {
    sendClick(in.window.button("C&lose"));  // as if during the work: it is not taken before
    SendMessageW(in.window.button(work), BM_CLICK, 0, 0);
    pumpFor(100);
    CHECK(in.screen->isOpen());
  }
}

TEST_CASE("windows: mnemonics need Alt") {
  InputScreen in(customerScreen);
  in.world.view(*in.screen, oneRecord);
  pump();
  for (const std::string focused : {"&Browse", "C&lose", "&Import"}) {
    CAPTURE(focused);
    SetFocus(in.window.button(focused.c_str()));
    sendPress('I');
    sendPress('L');
    pumpFor(100);
    CHECK(in.screen->isOpen());
    CHECK(in.screen->cmdImport.enabled());
  }
  sendPress('L', true);
  CHECK(pumpUntil([&] { return !in.screen->isOpen(); }));
}

/// Where the Tab key goes from the first control on, until it comes back.
std::vector<HWND> tabStops(const InputScreen& in) {
  std::vector<HWND> stops{GetNextDlgTabItem(in.window.handle, nullptr, FALSE)};
  SetFocus(stops[0]);
  pump();
  while (stops.size() < 20) {
    sendPress(VK_TAB);
    if (!pumpUntil([&] { return GetFocus() != stops.back(); })) break;
    if (GetFocus() == stops[0]) break;
    stops.push_back(GetFocus());
  }
  return stops;
}

/// From top to bottom, and in one row from left to right.
bool isBefore(const RECT& a, const RECT& b) {
  if (a.bottom <= b.top || b.bottom <= a.top) return a.top < b.top;
  return a.left < b.left;
}

TEST_CASE("windows: the Tab key goes as the controls stand, on all screens and in every state") {
  for (const ScreenMaker make : allScreens) {
    InputScreen in(make);
    for (const std::size_t state : {0U, 1U}) {
      CAPTURE(textOf(in.window.handle));
      const bool isMaster = make == masterScreen;
      if (state == 1 && isMaster) chooseSalesmen(in.window);
      if (state == 1) {
        in.screen->cmdview.setEnabled(true);
        in.screen->cmdImport.setEnabled(true);
      }
      const auto stops = tabStops(in);
      const std::size_t always = isMaster ? 7 : 6;  // the box or boxes, Browse, lists, Clear, Close
      CHECK(stops.size() == always + state * (isMaster ? 3 : 2));
      for (std::size_t i = 1; i < stops.size(); ++i) {
        CAPTURE(textOf(stops[i]));
        CHECK(isBefore(placeOf(stops[i - 1]), placeOf(stops[i])));
      }
    }
  }
}

TEST_CASE("windows: a long run repaints, takes no input and shows how far it is") {
  InputScreen in(customerScreen);
  std::string content = "Customer ID,Bill Amount,Balance\r\n";
  for (int i = 0; i < 1500; ++i) content += "C,1,1\r\n";
  in.world.view(*in.screen, content);
  pump();
  const HWND list = in.window.list(0);
  std::size_t records = 0;
  bool repainted = false;
  std::string title;
  in.world.database->onCall = [&](const FakeCall& call) {
    if (!call.text.starts_with("select count")) return;
    ++records;
    if (records == 10) InvalidateRect(list, nullptr, TRUE);
    if (records == 20) sendPress(VK_ESCAPE);
    if (records == 20) sendClick(in.window.button("C&lose"));
    if (records > 20 && records <= 24) Sleep(60);
    if (records == 30) {
      repainted = GetUpdateRect(list, nullptr, FALSE) == FALSE;
      title = textOf(in.window.handle);
      CHECK(in.screen->text(Property::Caption) == "Import Customer Opening");
    }
  };
  in.window.click("&Import");
  CHECK(records == 1500);
  CHECK(repainted);
  CHECK(title.ends_with(" of 1,500 records - Import Customer Opening"));
  CHECK(in.screen->isOpen());
  CHECK(textOf(in.window.handle) == "Import Customer Opening");
}

}  // namespace
}  // namespace velk
