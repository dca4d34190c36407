// Mapping by mouse and by keyboard, and what the lists' headers show of it.
#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>
#include <utility>

#include "tests/windows/input_screen.h"
#include "tests/windows/seen_text.h"

namespace velk {
namespace {

HWND headerOf(HWND list) {
  return reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
}

RECT titlePlace(HWND header, int column) {
  RECT place{};
  SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column),
               reinterpret_cast<LPARAM>(&place));
  return place;
}

/// Runs an action as soon as a menu is open, and closes the menu if it is still open then.
class WhenMenuOpens {
 public:
  explicit WhenMenuOpens(std::function<void(HWND)> action) {
    current() = {std::move(action), 0, 0};
    timer_ = SetTimer(nullptr, 0, 40, tick);
  }
  ~WhenMenuOpens() { KillTimer(nullptr, timer_); }
  WhenMenuOpens(const WhenMenuOpens&) = delete;
  WhenMenuOpens& operator=(const WhenMenuOpens&) = delete;
  bool wasOpen() const { return current().ticks > 0; }

 private:
  struct State {
    std::function<void(HWND)> action;
    int ticks;
    int closings;
  };
  static State& current() {
    static State state;
    return state;
  }
  static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD) {
    const HWND menu = FindWindowW(L"#32768", nullptr);
    if (menu == nullptr || IsWindowVisible(menu) == FALSE) return;
    State& state = current();
    if (++state.ticks == 1) state.action(menu);
    if (state.ticks > 20) EndMenu();
  }
  UINT_PTR timer_;
};

/// Down to the only item, and that.
void chooseClear(HWND) {
  sendPress(VK_DOWN);
  sendPress(VK_RETURN);
}

constexpr const char* threeColumns = "Ref,R&D,Balance\r\nR1,x,5\r\n";
const Look chosenTitle{L"Arial", GetSysColor(COLOR_HIGHLIGHTTEXT), GetSysColor(COLOR_HIGHLIGHT)};

struct MappingScreen : InputScreen {
  MappingScreen() : InputScreen(customerScreen) {
    world.view(*screen, threeColumns);
    pump();
    for (const int list : {0, 1}) header[list] = headerOf(window.list(list));
  }
  bool showsChosen(const std::string& title) const {
    UpdateWindow(header[0]);
    return shows(header[0], title, chosenTitle);
  }
  HWND header[2];
};

TEST_CASE("windows: the chosen file column is marked until it is mapped, an ampersand as itself") {
  const MappingScreen in;
  CHECK_FALSE(in.showsChosen("R&&D"));
  sendClick(in.header[0], titlePlace(in.header[0], 1));
  CHECK(pumpUntil([&] { return in.showsChosen("R&&D"); }));
  sendClick(in.header[0], titlePlace(in.header[0], 0));
  CHECK(pumpUntil([&] { return in.showsChosen("Ref"); }));
  CHECK_FALSE(in.showsChosen("R&&D"));
  sendClick(in.header[1], titlePlace(in.header[1], 2));
  CHECK(pumpUntil([&] { return in.window.cell(1, 1, 2) == "Ref"; }));
  CHECK(pumpUntil([&] { return !in.showsChosen("Ref"); }));
}

TEST_CASE("windows: the menu opens on a title, too, and has the keys to itself while it is open") {
  const MappingScreen in;
  const HWND focus = in.window.button("&Clear");
  SetFocus(focus);
  RECT place = titlePlace(in.header[1], 5);
  POINT at{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
  ClientToScreen(in.header[1], &at);
  const WhenMenuOpens opened([&](HWND window) {
    sendPress(VK_F4, VK_CONTROL);
    sendPress(VK_TAB);
    chooseClear(window);
  });
  SetCursorPos(at.x, at.y);
  sendMouse(at, MOUSEEVENTF_RIGHTDOWN);
  sendMouse(at, MOUSEEVENTF_RIGHTUP);
  CHECK(pumpUntil([&] { return in.window.cell(1, 1, 5) == "Not Yet"; }));
  CHECK(opened.wasOpen());
  CHECK(in.screen->isOpen());
  CHECK(GetFocus() == focus);
}

std::string shownTip() {
  std::string text;
  const HWND tip = FindWindowW(TOOLTIPS_CLASSW, nullptr);
  for (HWND next = tip; next != nullptr; next = GetWindow(next, GW_HWNDNEXT)) {
    if (isOfClass(next, TOOLTIPS_CLASSW) && IsWindowVisible(next) != FALSE) text = textOf(next);
  }
  return text;
}

// A tip that does not come on a loaded machine comes when the pointer enters once more.
bool tellsAt(HWND window, POINT at, const std::string& says) {
  ClientToScreen(window, &at);
  for (int attempt = 0; attempt < 3; ++attempt) {
    for (const POINT to : {POINT{1, 1}, at}) {
      SetCursorPos(to.x, to.y);
      sendMouse(to, 0);
      if (!pumpUntil([&] { return shownTip() == (to.x == at.x ? says : ""); })) break;
      if (to.x == at.x) return true;
    }
  }
  return false;
}

TEST_CASE("windows: a tooltip of the lists says what to click next") {
  const MappingScreen in;
  const struct {
    int list;
    bool chooses;
    std::string says;
  } rows[] = {
      {0, false, "Click the title of a column, then the title of its field in the list below."},
      {1, false,
       "To map a field, first click the title of a column in the list above. To unmap a "
       "field, right-click it."},
      {0, true, "Now click the title of the field in the list below."},
      {1, true, "Click the title of the field that the chosen column is for."}};
  for (const auto& row : rows) {
    CAPTURE(row.says);
    if (row.chooses) in.window.clickHeader(0, 1);
    for (const HWND over : {in.header[row.list], in.window.list(row.list)}) {
      CHECK(tellsAt(over, {40, over == in.header[row.list] ? 8 : 60}, row.says));
    }
  }
}

}  // namespace
}  // namespace velk
