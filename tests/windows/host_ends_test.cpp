// Whatever a host takes away, at whatever moment: nothing crashes, nothing is posted twice, and
// what was posted is told where it still can be.
#include <functional>
#include <set>

#include "tests/windows/dll_host.h"

namespace velk {
namespace {

/// A host with a window of its own that owns the screen.
struct OwningHost : Host {
  OwningHost() { SetWindowLongPtrW(screen, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner)); }
  ~OwningHost() { DestroyWindow(owner); }
  OwningHost(const OwningHost&) = delete;
  OwningHost& operator=(const OwningHost&) = delete;

  HWND owner = CreateWindowW(L"STATIC", L"Host", WS_OVERLAPPEDWINDOW, 0, 0, 90, 90, nullptr,
                             nullptr, nullptr, nullptr);
  HWND screen = open(vendors);
};

struct End {
  std::string name;
  void (*happen)(OwningHost&);
  bool closes;  ///< the screen, at the latest when its run has ended
  bool goesOn;  ///< the run posts all its records
  bool quits;   ///< the host's loop is left the request to end
};

const End ends[] = {
    {"the screen is closed", [](OwningHost& h) { SendMessageW(h.screen, WM_CLOSE, 0, 0); }, true,
     true, false},
    {"the screen is destroyed", [](OwningHost& h) { DestroyWindow(h.screen); }, true, true, false},
    {"its owner is destroyed", [](OwningHost& h) { DestroyWindow(h.owner); }, true, true, false},
    {"the object is released", [](OwningHost& h) { h.object.Reset(); }, false, true, false},
    {"the loop is ended", [](OwningHost&) { PostQuitMessage(7); }, true, true, true},
    {"COM is ended", [](OwningHost&) { CoUninitialize(); }, false, false, false}};

/// Whether the loop is asked to end; takes the request.
bool takeQuit() {
  MSG request{};
  return PeekMessageW(&request, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != FALSE &&
         request.wParam == 7;
}

/// In an apartment of its own, a user browses, views and imports; the end happens at a call of the
/// database, from 1, or in the message, at 0. False when the run was over before.
bool endsRun(const End& end, int moment) {
  bool happened = false;
  inAnotherApartment([&] {
    CAPTURE(end.name);
    CAPTURE(moment);
    OwningHost host;
    const auto happens = [&] {
      if (!std::exchange(happened, true)) end.happen(host);
    };
    int calls = 0;
    host.database.onCall = [&](const FakeCall&) {
      if (++calls == moment) happens();
    };
    if (moment == 0) host.boxes.onShown = happens;
    host.import(host.screen);
    const bool quits = takeQuit();
    pump();
    const Texts posted = host.database.procedureCalls();
    CHECK(std::set(posted.begin(), posted.end()).size() == posted.size());
    if (end.goesOn || moment == 0) CHECK(posted.size() == 4);
    // A line for each call that could not be made, besides that of the missing service.
    CHECK(log().size() >= 5 - posted.size());
    CHECK(host.boxes.shown().size() == 1);
    CHECK((IsWindow(host.screen) == FALSE) == (end.closes && happened));
    CHECK(quits == (end.quits && happened));
  });
  return happened;
}

/// The same while the file dialog of Browse is open.
void endsDialog(const End& end) {
  inAnotherApartment([&] {
    CAPTURE(end.name);
    OwningHost host;
    host.boxes.onDialog = [&] { end.happen(host); };
    host.boxes.chooseFile(fromWide(modulePath(nullptr)));
    Window(host.screen).click("&Browse");
    CHECK(takeQuit() == end.quits);
    pump();
    CHECK((IsWindow(host.screen) == FALSE) == end.closes);
    CHECK(log().size() <= 1);
  });
}

/// What happens while a popup menu is open, which has a message loop of its own.
thread_local std::function<void()> inMenu;

void CALLBACK onMenuTimer(HWND, UINT, UINT_PTR timer, DWORD) {
  if (FindWindowW(L"#32768", nullptr) == nullptr || !inMenu) return;
  KillTimer(nullptr, timer);
  std::exchange(inMenu, nullptr)();
  const HWND menu = FindWindowW(L"#32768", nullptr);
  if (menu != nullptr) PostMessageW(menu, WM_KEYDOWN, VK_ESCAPE, 1);
}

/// The same while the popup menu of the mapping list is open.
void endsMenu(const End& end) {
  inAnotherApartment([&] {
    CAPTURE(end.name);
    OwningHost host;
    writeOpening(host.boxes);
    const Window window(host.screen);
    for (const char* button : {"&Browse", "&View"}) window.click(button);
    NMITEMACTIVATE click{};
    click.hdr = {window.list(1), static_cast<UINT_PTR>(GetDlgCtrlID(window.list(1))),
                 static_cast<UINT>(NM_RCLICK)};
    click.ptAction.x = 5;
    bool happened = false;
    inMenu = [&] {
      happened = true;
      end.happen(host);
    };
    SetTimer(nullptr, 0, 20, onMenuTimer);
    SendMessageW(GetParent(window.list(1)), WM_NOTIFY, click.hdr.idFrom,
                 reinterpret_cast<LPARAM>(&click));
    CHECK(happened);
    CHECK(takeQuit() == end.quits);
    pump();
    CHECK((IsWindow(host.screen) == FALSE) == end.closes);
    CHECK(FindWindowW(L"#32768", nullptr) == nullptr);
  });
}

TEST_CASE("host ends: at every call of a run, in its message, the file dialog and a menu") {
  int first = 1;
  for (const End& end : ends) {
    endsDialog(end);
    endsMenu(end);
    CHECK(endsRun(end, 0));
    // Every other call, and with the next end those between them.
    int moment = first;
    while (endsRun(end, moment)) moment += 2;
    CHECK(moment > 6);  // two records of two calls each, and what is asked before
    first = 3 - first;
  }
}

}  // namespace
}  // namespace velk
