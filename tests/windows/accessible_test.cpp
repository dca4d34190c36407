// What a screen reader is told of each control, and what high contrast changes.
#include <ole2.h>

#include <commctrl.h>
#include <oleacc.h>

#include <map>

#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "opening/Velk_frmVenOpn_OpnImp.h"
#include "opening/opening_import.h"
#include "platform/windows/com_pointer.h"
#include "platform/windows/forms/window_shell.h"
#include "platform/windows/variants.h"
#include "tests/support/test_world.h"
#include "tests/windows/screen_windows.h"
#include "ui/tab_order.h"

namespace velk {
namespace {

/// The one that a screen reader knows a class of the system's by.
LONG roleOf(const std::string& windowClass) {
  static const std::map<std::string, LONG> roles{{"Button", ROLE_SYSTEM_PUSHBUTTON},
                                                 {"Edit", ROLE_SYSTEM_TEXT},
                                                 {"ComboBox", ROLE_SYSTEM_COMBOBOX},
                                                 {"SysListView32", ROLE_SYSTEM_LIST}};
  const auto found = roles.find(windowClass);
  return found == roles.end() ? ROLE_SYSTEM_CLIENT : found->second;
}

std::string classOf(HWND window) {
  wchar_t name[64];
  return fromWide({name, static_cast<std::size_t>(GetClassNameW(window, name, 64))});
}

/// What the system's accessibility component answers for a control.
struct Accessible {
  explicit Accessible(HWND window) {
    // Its identifier is not in every import library.
    constexpr IID accessible{
        0x618736E0, 0x3C3D, 0x11CF, {0x81, 0x0C, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
    REQUIRE(
        SUCCEEDED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), accessible,
                                             reinterpret_cast<void**>(object.GetAddressOf()))));
  }
  std::string text(HRESULT (STDMETHODCALLTYPE IAccessible::*member)(VARIANT, BSTR*),
                   LONG item = CHILDID_SELF) const {
    BSTR answer = nullptr;
    (object.Get()->*member)(child(item), &answer);
    const std::string text = Bstr::textOf(answer);
    SysFreeString(answer);
    return text;
  }
  LONG number(HRESULT (STDMETHODCALLTYPE IAccessible::*member)(VARIANT, VARIANT*)) const {
    VARIANT answer{};
    (object.Get()->*member)(child(CHILDID_SELF), &answer);
    return answer.lVal;
  }
  static VARIANT child(LONG item) {
    VARIANT child{};
    child.vt = VT_I4;
    child.lVal = item;
    return child;
  }

  ComPtr<IAccessible> object;
};

/// The text that names a box or a list: the one before it, shown or not.
std::string labelOf(HWND window) {
  const HWND before = GetWindow(window, GW_HWNDPREV);
  return before != nullptr && classOf(before) == "Static" ? textOf(before) : std::string();
}

struct Walk {
  Texts told;      ///< "class: name", with the key that a name's "&" stands before
  Texts notAsked;  ///< what the component here has no answer for
};

void ask(HWND window, Walk& walk) {
  const std::string type = classOf(window);
  const Accessible control(window);
  std::string name = control.text(&IAccessible::get_accName);
  const bool isNamedByLabel = type != "Button";
  if (isNamedByLabel && name != labelOf(window)) {
    CHECK(type != "Edit");  // here the component looks for it
    walk.notAsked.push_back(type + ": name");
    name = labelOf(window);
  }
  const std::string key = isNamedByLabel ? "" : control.text(&IAccessible::get_accKeyboardShortcut);
  walk.told.push_back(type + ": " + name + (key.empty() ? "" : ", " + key));
  const LONG role = control.number(&IAccessible::get_accRole);
  if (role == ROLE_SYSTEM_CLIENT && roleOf(type) != role) {
    walk.notAsked.push_back(type + ": role");
  } else {
    CHECK(role == roleOf(type));
  }
  const bool isUnavailable =
      (control.number(&IAccessible::get_accState) & STATE_SYSTEM_UNAVAILABLE) != 0;
  CHECK(isUnavailable == (IsWindowEnabled(window) == FALSE));
}

/// The first title of a list and the first text of its cells.
void askItems(HWND list, Walk& walk) {
  const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  wchar_t title[64] = L"", cell[64] = L"";
  HDITEMW column{};
  column.mask = HDI_TEXT;
  column.pszText = title;
  column.cchTextMax = 64;
  LVITEMW item{};
  item.pszText = cell;
  item.cchTextMax = 64;
  SendMessageW(header, HDM_GETITEMW, 0, reinterpret_cast<LPARAM>(&column));
  SendMessageW(list, LVM_GETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&item));
  for (const auto& [window, text] : {std::pair(header, title), std::pair(list, cell)}) {
    const std::string name = Accessible(window).text(&IAccessible::get_accName, 1);
    if (name != fromWide(text)) walk.notAsked.push_back(classOf(window) + ": names of items");
  }
}

/// All that the keyboard can go to.
void walkInside(HWND window, Walk& walk) {
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (IsWindowVisible(child) == FALSE) continue;
    CAPTURE(textOf(child));
    if ((GetWindowLongW(child, GWL_STYLE) & WS_TABSTOP) != 0) ask(child, walk);
    if (isOfClass(child, WC_LISTVIEWW)) {
      askItems(child, walk);
    } else {
      walkInside(child, walk);
    }
  }
}

struct AccessibleCase {
  std::function<std::shared_ptr<ImportScreen>(Velk_ModOpnImp&)> make;
  Texts told;
};

template <class Screen, const OpeningImportKind& kind>
std::shared_ptr<ImportScreen> makeOpening(Velk_ModOpnImp& module) {
  return std::make_shared<Screen>(module, std::make_unique<OpeningImportButton>(kind));
}
std::shared_ptr<ImportScreen> makeMasters(Velk_ModOpnImp& module) {
  return std::make_shared<Velk_frmBankBranch_OpnImp>(module);
}

const Texts opening{"Button: Browse, Alt+B",        "Button: Clear, Alt+C",
                    "Button: Close, Alt+l",         "Button: Import, Alt+I",
                    "Button: View, Alt+V",          "Edit: Select the CSV file",
                    "SysListView32: CSV File Data", "SysListView32: Mapped to"};

Texts sorted(Texts texts) {
  std::ranges::sort(texts);
  return texts;
}

TEST_CASE("windows: each control of each screen has a name and a role") {
  Texts masters = opening;
  masters.emplace_back("ComboBox: Select the CSV file");
  const AccessibleCase cases[] = {{makeOpening<Velk_frmCustOpn_OpnImp, customerOpening>, opening},
                                  {makeOpening<Velk_frmVenOpn_OpnImp, vendorOpening>, opening},
                                  {makeMasters, sorted(masters)}};
  Texts notAsked;
  for (const AccessibleCase& what : cases) {
    WindowShell shell{[] { return nullptr; }};
    TestWorld world{&shell};
    const auto screen = what.make(world.module);
    screen->initForm(world.database, nullptr);
    world.view(*screen, "a title\r\na text\r\n");
    pump();
    Walk walk;
    walkInside(Window(*screen).handle, walk);
    CHECK(sorted(walk.told) == what.told);
    // As a host changes them.
    screen->FraBrowse.set(Property::Caption, "The file");
    setTabIndex(*screen, screen->TxtFileName, 0);
    const HWND box =
        inside(Window(*screen).handle, [](HWND child) { return isOfClass(child, L"Edit"); });
    CHECK(labelOf(box) == "The file");
    notAsked = walk.notAsked;
    closeScreens();
  }
  const auto again = std::ranges::unique(notAsked = sorted(notAsked));
  notAsked.erase(again.begin(), again.end());
  for (const std::string& question : notAsked) MESSAGE("no answer here to " << question);
}

/// A colour of the system's while this lives.
struct SystemColor {
  SystemColor(int which, COLORREF color) : which_(which), before_(GetSysColor(which)) {
    set(color);
  }
  ~SystemColor() { set(before_); }
  SystemColor(const SystemColor&) = delete;
  SystemColor& operator=(const SystemColor&) = delete;

 private:
  void set(COLORREF color) const {
    REQUIRE(SetSysColors(1, &which_, &color) != FALSE);
    pump();
  }
  int which_;
  COLORREF before_;
};

// No flag for it can be set everywhere; what it changes are the system's colours.
TEST_CASE(
    "windows: high contrast reaches a screen that is open, where its colours are the system's") {
  constexpr const char* windowText = "-2147483640";
  constexpr COLORREF contrast = 0x00E0F0;
  WindowShell shell{[] { return nullptr; }};
  TestWorld world{&shell};
  world.database->answerRows("Select * From ColorSettings",
                             {{"", "255", "0"}, {"", "255", "0"}, {"", "16777215", windowText}});
  const auto screen = makeMasters(world.module);
  screen->initForm(world.database, nullptr);
  pump();
  const HWND list = Window(*screen).list(1);
  const auto textColor = [&] {
    return static_cast<COLORREF>(SendMessageW(list, LVM_GETTEXTCOLOR, 0, 0));
  };
  CHECK(textColor() == GetSysColor(COLOR_WINDOWTEXT));
  const SystemColor changed(COLOR_WINDOWTEXT, contrast);
  CHECK(textColor() == contrast);
  CHECK(SendMessageW(list, LVM_GETBKCOLOR, 0, 0) == 0xFFFFFF);
  closeScreens();
}

}  // namespace
}  // namespace velk
