#include "tests/tour/hands.h"

#include "tests/support/sent_input.h"
#include "tests/tour/host_process.h"
#include "tests/tour/seen_list.h"
#include "tests/tour/user_input.h"

namespace velk {

namespace {

constexpr wchar_t menuClass[] = L"#32768";

POINT inside(HWND window, double right, double down) {
  RECT at{};
  GetWindowRect(window, &at);
  return {at.left + static_cast<LONG>(right * (at.right - at.left)),
          at.top + static_cast<LONG>(down * (at.bottom - at.top))};
}

LRESULT chosenIn(HWND box) {
  return SendMessageW(box, CB_GETCURSEL, 0, 0);
}

bool isDropped(HWND box) {
  return SendMessageW(box, CB_GETDROPPEDSTATE, 0, 0) != FALSE;
}

/// Does it again when that had no effect: a late report of an earlier move makes a drag of a click.
void tryUntil(std::string_view what, const std::function<bool()>& isSo,
              const std::function<void()>& tries) {
  constexpr ULONGLONG betweenTries = 3'000;  // milliseconds
  ULONGLONG next = 0;
  waitFor(what, [&] {
    if (isSo()) return true;
    if (GetTickCount64() >= next) {
      tries();
      next = GetTickCount64() + betweenTries;
    }
    return false;
  });
}

class MouseHands final : public Hands {
 public:
  MouseHands(const SeenWindows& host, int dotsPerInch) : Hands(host), dotsPerInch_(dotsPerInch) {}

  // On the arrow; then on the item, where a user sees it.
  void choose(HWND box, int place) const override {
    const COMBOBOXINFO parts = partsOf(box);
    tryUntil(
        "the choice to be made", [&] { return !isDropped(box) && chosenIn(box) == place; },
        [&] {
          if (!isDropped(box)) click(middleOf(parts.rcButton, box));
          waitFor("a list of choices to drop", [&] { return hasItems(parts.hwndList); });
          clickItem(parts.hwndList, place);
        });
  }

  void chooseMenu(HWND window, const MenuChoice& choice) const override {
    POINT at{scaled(choice.menuCenter), -scaled(menuBarHeight / 2)};
    ClientToScreen(window, &at);
    click(at);
    const HWND menu = host().ofClass(menuClass);
    click(inside(menu, 0.5, (choice.place + 0.5) / choice.items));
  }

  void confirm(HWND dialog) const override {
    const HWND button = GetDlgItem(dialog, IDOK);
    click(button != nullptr ? button : childOfClass(dialog, L"Button"));
  }

  HWND openPopup(HWND list, int field) const override {
    tryUntil(
        "the popup menu", [&] { return host().shownNow(menuClass) != nullptr; },
        [&] { click(cellPoint(list, 2, field), Button::Right); });
    return host().ofClass(menuClass);
  }
  void choosePopup(HWND menu) const override { click(menu); }

  void chooseColumn(HWND list, int column) const override { click(headerPoint(list, column)); }

 private:
  static constexpr int menuBarHeight = 20;

  // A list may be shown and have room for none.
  static bool hasItems(HWND list) {
    RECT inside{};
    GetClientRect(list, &inside);
    return IsWindowVisible(list) != FALSE && inside.bottom > 0;
  }
  static void clickItem(HWND list, int place) {
    const auto height = static_cast<LONG>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
    POINT item{height, height * place + height / 2};
    ClientToScreen(list, &item);
    if (WindowFromPoint(item) != list) notThere("the item in the list that dropped");
    click(item);
  }
  int scaled(int size) const { return MulDiv(size, dotsPerInch_, usualDotsPerInch); }
  void pressEnabled(HWND button) const override { click(button); }

  int dotsPerInch_;
};

/// Goes to the control as a user without a mouse has to: all controls are on the way.
void tabTo(HWND control) {
  constexpr int enough = 40;
  for (int i = 0; i < enough && focusIn(control) != control; ++i) {
    const HWND before = focusIn(control);
    sendPress(VK_TAB);
    waitFor("the focus to move on", [&] { return focusIn(control) != before; });
  }
  if (focusIn(control) != control) notThere("by the Tab key the control " + textShown(control));
}

class KeyboardHands final : public Hands {
 public:
  explicit KeyboardHands(const SeenWindows& host) : Hands(host) {}

  void choose(HWND box, int place) const override {
    tabTo(box);
    sendPress(VK_DOWN, VK_MENU);
    waitFor("a list of choices to drop", [&] { return isDropped(box); });
    const auto chosen = static_cast<int>(chosenIn(box));
    for (int i = chosen; i < place; ++i) sendPress(VK_DOWN);
    for (int i = chosen; i > place; --i) sendPress(VK_UP);
    sendPress(VK_RETURN);
    waitFor("the choice to be made", [&] { return !isDropped(box) && chosenIn(box) == place; });
  }

  void chooseMenu(HWND, const MenuChoice& choice) const override {
    sendPress(choice.menu, VK_MENU);
    host().ofClass(menuClass);
    sendPress(choice.item);
  }

  void confirm(HWND) const override { sendPress(VK_RETURN); }

  HWND openPopup(HWND list, int field) const override {
    chooseField(list, field);
    sendPress(VK_F10, VK_SHIFT);
    return host().ofClass(menuClass);
  }
  void choosePopup(HWND) const override {
    sendPress(VK_DOWN);
    sendPress(VK_RETURN);
  }

  void chooseColumn(HWND list, int column) const override {
    chooseField(list, column);
    sendPress(VK_RETURN);
  }

 private:
  void pressEnabled(HWND button) const override {
    tabTo(button);
    sendPress(VK_SPACE);
  }

  // From the first column, wherever the keyboard's place in the header was before.
  void chooseField(HWND list, int column) const {
    tabTo(list);
    for (std::size_t i = columnTitles(list).size(); i > 0; --i) sendPress(VK_LEFT);
    for (int i = 0; i < column; ++i) sendPress(VK_RIGHT);
  }
};

}  // namespace

void Hands::press(HWND button) const {
  waitFor("a button to be enabled", [&] { return IsWindowEnabled(button) != FALSE; });
  pressEnabled(button);
}

std::unique_ptr<Hands> mouseHands(const SeenWindows& host, int dotsPerInch) {
  return std::make_unique<MouseHands>(host, dotsPerInch);
}

std::unique_ptr<Hands> keyboardHands(const SeenWindows& host) {
  return std::make_unique<KeyboardHands>(host);
}

}  // namespace velk
