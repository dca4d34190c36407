// Screens under a real mouse and a real keyboard.
#include <windows.h>

#include <shobjidl.h>

#include <functional>
#include <string>

#include "apps/host/class_registration.h"
#include "masters/salesman_workbook.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "platform/windows/windows_desktop.h"
#include "tests/windows/input_screen.h"
#include "tests/windows/stub_object.h"

namespace velk {
namespace {

RECT placeOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return place;
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
    sendPress('I', VK_MENU);
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

TEST_CASE("windows: the keyboard") {
  OpenScreen in;
  in.open(customerScreen);
  in.world.desktop.chooseFile("in.csv");
  const HWND text = GetFocus();
  PostMessageW(text, WM_CHAR, 'x', 1);
  pump();
  CHECK(in.screen->TxtFileName.value() == "x");
  press(VK_TAB);
  press(VK_RETURN);
  CHECK(textOf(text) == "in.csv");
  press(VK_F4);
  CHECK(in.screen->isOpen());
  press(VK_F4, true);
  CHECK_FALSE(in.screen->isOpen());
  CHECK(IsWindow(in.window.handle) == FALSE);
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
  sendPress('L', VK_MENU);
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

TEST_CASE("windows: a user who comes back finds the focus on a control that takes keys") {
  const struct {
    const char* away;  ///< where the focus is when the user goes
    std::function<void(ImportScreen&)> meanwhile;
    const char* back;  ///< empty: the file name
  } rows[] = {{"&Clear", [](ImportScreen&) {}, "&Clear"},
              {"&Clear", [](ImportScreen& screen) { screen.CmdClear.setEnabled(false); }, "C&lose"},
              {"&Clear", [](ImportScreen& screen) { screen.CmdClear.setVisible(false); }, "C&lose"},
              {"&Clear", [](ImportScreen& screen) { screen.TxtFileName.setFocus(); }, ""}};
  for (const auto& row : rows) {
    CAPTURE(&row - rows);
    InputScreen in(customerScreen);
    SetFocus(in.window.button(row.away));
    // As another program's window is told of, which the thread's own windows are not.
    SendMessageW(in.window.handle, WM_ACTIVATE, WA_INACTIVE, 0);
    SetFocus(nullptr);
    row.meanwhile(*in.screen);
    SetFocus(nullptr);
    SetFocus(in.window.handle);
    CHECK(GetFocus() == (*row.back == 0 ? in.ofClass(L"Edit") : in.window.button(row.back)));
  }
}

/// The texts that title bars of screens are given while this lives.
class Titles {
 public:
  Titles() {
    seen.clear();
    hook_ = SetWindowsHookExW(WH_CALLWNDPROC, note, nullptr, GetCurrentThreadId());
  }
  ~Titles() { UnhookWindowsHookEx(hook_); }
  Titles(const Titles&) = delete;
  Titles& operator=(const Titles&) = delete;

  static inline Texts seen;

 private:
  static LRESULT CALLBACK note(int code, WPARAM sender, LPARAM details) {
    const auto& message = *reinterpret_cast<const CWPSTRUCT*>(details);
    if (code == HC_ACTION && message.message == WM_SETTEXT &&
        isOfClass(message.hwnd, L"Velk_OpnImp.Form")) {
      seen.push_back(fromWide(reinterpret_cast<const wchar_t*>(message.lParam)));
    }
    return CallNextHookEx(nullptr, code, sender, details);
  }
  HHOOK hook_;
};

/// Takes the place of the taskbar: keeps what it is to show.
struct FakeTaskbar : StubObject<ITaskbarList3> {
  FakeTaskbar() {
    shown.clear();
    on(&ITaskbarList3::HrInit, [](void*) { return S_OK; });
    on(&ITaskbarList3::SetProgressState, [](void*, HWND, TBPFLAG state) {
      shown.push_back("state " + std::to_string(state));
      return S_OK;
    });
    on(&ITaskbarList3::SetProgressValue, [](void*, HWND, ULONGLONG done, ULONGLONG all) {
      shown.push_back(std::to_string(done) + " of " + std::to_string(all));
      return S_OK;
    });
  }
  static inline Texts shown;

 private:
  ClassRegistration registered_{CLSID_TaskbarList, [this] { return ComPtr<IUnknown>(get()); }};
};

std::string salesmenWorkbook(const Texts& names) {
  MemoryFiles files;
  const auto sheet = XlsSpreadsheet(files).add();
  int column = 0;
  for (const std::string_view caption : salesmanCaptions) sheet->setText(1, ++column, caption);
  int row = 1;
  for (const std::string& name : names) sheet->setText(++row, 1, name);
  sheet->saveAs("salesmen.xls");
  return files.contents["salesmen.xls"];
}

TEST_CASE("windows: View and a salesmen's run show on the taskbar how far they are") {
  constexpr DWORD longEnough = 150;  // milliseconds
  const FakeTaskbar taskbar;
  InputScreen in(masterScreen);
  in.world.files.onRead = [] { Sleep(longEnough); };
  in.world.view(*in.screen, "Bank Code\r\nA\r\n");
  CHECK(taskbar.shown == Texts{"state " + std::to_string(TBPF_INDETERMINATE), "state 0"});
  in.world.files.onRead = nullptr;
  chooseSalesmen(in.window);
  in.world.database->answerRows("sp_Check_DSCaption", {{1}});
  in.world.view(*in.screen, salesmenWorkbook({"A", "B"}));
  FakeTaskbar::shown.clear();
  const Titles titles;
  in.world.database->onCall = [](const FakeCall&) { Sleep(longEnough); };
  in.window.click("&Import");
  CHECK(taskbar.shown == Texts{"2 of 2", "state 0"});
  CHECK(titles.seen == Texts{"2 of 2 records - Import - Salesman", "Import - Salesman"});
}

}  // namespace
}  // namespace velk
