// What a screen reader is told of each control, and what high contrast changes.
#include <ole2.h>

#include <commctrl.h>
#include <oleacc.h>

#include "platform/windows/com_pointer.h"
#include "platform/windows/variants.h"
#include "tests/windows/open_screen.h"
#include "ui/tab_order.h"

namespace velk {
namespace {

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
  std::string text(HRESULT (STDMETHODCALLTYPE IAccessible::*member)(VARIANT, BSTR*)) const {
    BSTR answer = nullptr;
    (object.Get()->*member)(itself(), &answer);
    const std::string text = Bstr::textOf(answer);
    SysFreeString(answer);
    return text;
  }
  LONG number(HRESULT (STDMETHODCALLTYPE IAccessible::*member)(VARIANT, VARIANT*)) const {
    VARIANT answer{};
    (object.Get()->*member)(itself(), &answer);
    return answer.lVal;
  }
  static VARIANT itself() {
    VARIANT self{};
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    return self;
  }

  ComPtr<IAccessible> object;
};

/// The text that names a box or a list: the one before it, shown or not.
std::string labelOf(HWND window) {
  const HWND before = GetWindow(window, GW_HWNDPREV);
  return before != nullptr && classOf(before) == "Static" ? textOf(before) : std::string();
}

/// "class: name" of a control, with the key that a name's "&" stands before.
std::string told(HWND window) {
  const std::string type = classOf(window);
  const Accessible control(window);
  if (type != "Button") {
    // Not every system's component looks for the label of all of them.
    if (type == "Edit") CHECK(control.text(&IAccessible::get_accName) == labelOf(window));
    return type + ": " + labelOf(window);
  }
  const LONG state = control.number(&IAccessible::get_accState);
  CHECK(((state & STATE_SYSTEM_UNAVAILABLE) != 0) == (IsWindowEnabled(window) == FALSE));
  return type + ": " + control.text(&IAccessible::get_accName) + ", " +
         control.text(&IAccessible::get_accKeyboardShortcut);
}

/// Of all that the keyboard can go to.
void tellInside(HWND window, Texts& all) {
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (IsWindowVisible(child) == FALSE) continue;
    CAPTURE(textOf(child));
    if ((GetWindowLongW(child, GWL_STYLE) & WS_TABSTOP) != 0) all.push_back(told(child));
    if (!isOfClass(child, WC_LISTVIEWW)) tellInside(child, all);
  }
}

const Texts opening{"Button: Browse, Alt+B",        "Button: Clear, Alt+C",
                    "Button: Close, Alt+l",         "Button: Import, Alt+I",
                    "Button: View, Alt+V",          "Edit: Select the CSV file",
                    "SysListView32: CSV File Data", "SysListView32: Mapped to"};

TEST_CASE("windows: each control of each screen has a name") {
  Texts masters = opening;
  masters.emplace_back("ComboBox: Select the CSV file");
  std::ranges::sort(masters);
  for (const ScreenMaker make : allScreens) {
    OpenScreen in;
    in.open(make);
    Texts all;
    tellInside(in.window.handle, all);
    std::ranges::sort(all);
    CHECK(all == (make == masterScreen ? masters : opening));
    // As a host changes them.
    in.screen->FraBrowse.set(Property::Caption, "The file");
    setTabIndex(*in.screen, in.screen->TxtFileName, 0);
    CHECK(labelOf(in.ofClass(L"Edit")) == "The file");
    closeScreens();
  }
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
  OpenScreen in;
  in.world.database->answerRows("Select * From ColorSettings",
                                {{"", "255", "0"}, {"", "255", "0"}, {"", "16777215", windowText}});
  in.open(masterScreen);
  const HWND list = in.window.list(1);
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
