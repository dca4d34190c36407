// A user's hands: what is done on the windows, by mouse or by keyboard alone.
#pragma once

#include <windows.h>

#include <memory>

#include "tests/tour/seen_windows.h"

namespace velk {

class Hands {
 public:
  virtual ~Hands() = default;
  Hands(const Hands&) = delete;
  Hands& operator=(const Hands&) = delete;

  /// Presses a button as soon as it is enabled.
  void press(HWND button) const;
  /// Chooses from a box's list, which is seen to drop.
  virtual void choose(HWND box, int place) const = 0;
  /// Chooses from the host's menu: a menu by its place and letter, an item of `items` likewise.
  struct MenuChoice {
    WORD menu;
    int menuCenter;  ///< in pixels from the left of the window, at 96 dots per inch
    WORD item;
    int place;
    int items;
  };
  virtual void chooseMenu(HWND window, const MenuChoice& choice) const = 0;
  /// Presses the default button of a dialog.
  virtual void confirm(HWND dialog) const = 0;
  /// Opens the popup menu of a field in a mapping list.
  virtual HWND openPopup(HWND list, int field) const = 0;
  /// Chooses the only item of a popup menu.
  virtual void choosePopup(HWND menu) const = 0;
  /// Chooses a column by its header.
  virtual void chooseColumn(HWND list, int column) const = 0;

 protected:
  explicit Hands(const SeenWindows& host) : host_(host) {}
  const SeenWindows& host() const { return host_; }

 private:
  virtual void pressEnabled(HWND button) const = 0;

  const SeenWindows& host_;
};

std::unique_ptr<Hands> mouseHands(const SeenWindows& host, int dotsPerInch);
std::unique_ptr<Hands> keyboardHands(const SeenWindows& host);

}  // namespace velk
