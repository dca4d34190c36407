// The header of a list. The control stays the system's; only its painting is ours, because the
// system's takes "&" in a title for a mnemonic, measures with another font than it paints with, and
// knows no mark of a chosen column.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/windows/scale.h"

namespace velk {

/// What the header shows, asked for when it paints or is clicked. A column is its number from 0.
struct HeaderLook {
  std::function<std::string(int column)> title;
  std::function<std::optional<int>()> chosen;   ///< in the colours of selected text
  std::function<std::optional<int>()> current;  ///< with a focus rectangle
  std::function<void(POINT at)> rightClicked;   ///< in the header's own pixels
  /// Keeps what the others belong to while they run.
  std::function<std::shared_ptr<void>()> keep;
};

class HeaderWindow {
 public:
  HeaderWindow(HWND header, Scale scale, HeaderLook look);
  ~HeaderWindow();
  HeaderWindow(const HeaderWindow&) = delete;
  HeaderWindow& operator=(const HeaderWindow&) = delete;

  HWND handle() const { return handle_; }
  /// Empty for a column that does not exist.
  RECT placeOf(int column) const;
  /// What happened to a column, for screen readers: an EVENT_OBJECT_... number.
  void tell(DWORD event, int column) const {
    NotifyWinEvent(event, handle_, OBJID_CLIENT, column + 1);  // CHILDID_SELF is 0
  }
  void paintAnew() const { InvalidateRect(handle_, nullptr, FALSE); }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void seen(UINT message, LPARAM lParam);
  void paint() const;
  void paintColumn(HDC dc, int column, const RECT& place) const;
  void paintFrame(HDC dc, RECT place, bool isPressed) const;

  HWND handle_;
  Scale scale_;
  HeaderLook look_;
  int pressed_ = -1;
};

}  // namespace velk
