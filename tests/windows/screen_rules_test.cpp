// Rules of the screens that show in their windows only: size, place and state.
#include <windows.h>

#include <functional>

#include "tests/windows/open_screen.h"

namespace velk {
namespace {

TEST_CASE("windows: a size or state that code sets is no other than the fixed one") {
  const std::function<void(Form&)> changes[] = {
      [](Form& form) { form.set(Property::Width, 5000); },
      [](Form& form) { form.set(Property::Height, 15000); },
      [](Form& form) { form.set(Property::WindowState, 2); },
      [](Form& form) { ShowWindow(Window(form).handle, SW_MAXIMIZE); },
      [](Form& form) { SetWindowPos(Window(form).handle, nullptr, 0, 0, 300, 300, SWP_NOZORDER); }};
  for (const ScreenMaker make : allScreens) {
    OpenScreen usual;
    usual.open(make);
    const RECT fixed = usual.window.outer();
    for (const auto& change : changes) {
      CAPTURE(&change - changes);
      OpenScreen in;
      in.world.host->onReady = change;
      in.open(make, change);
      for (int when = 0; when < 2; ++when) {  // in the host's two hooks, and later
        CAPTURE(when);
        const RECT now = in.window.outer();
        CHECK(EqualRect(&now, &fixed) != FALSE);
        CHECK(IsZoomed(in.window.handle) == FALSE);
        CHECK(in.screen->bounds() == ImportScreen::fixedBounds);
        change(*in.screen);
        pump();
      }
    }
  }
}

TEST_CASE("windows: hosts hide a screen and show it again") {
  OpenScreen in;
  in.world.host->onReady = [](Form& form) { form.setVisible(false); };
  in.open(customerScreen);
  CHECK(IsWindowVisible(in.window.handle) == FALSE);
  in.screen->set(Property::WindowState, 1);
  pump();
  CHECK(IsWindowVisible(in.window.handle) == FALSE);
  in.screen->setVisible(true);
  pump();
  CHECK(IsWindowVisible(in.window.handle) != FALSE);
  CHECK(IsIconic(in.window.handle) != FALSE);
  for (const bool visible : {false, true}) {
    ShowWindow(in.window.handle, visible ? SW_SHOWNORMAL : SW_HIDE);
    CHECK(in.screen->visible() == visible);
  }
  CHECK(in.screen->isOpen());
}

TEST_CASE("windows: a screen that its host minimises at once is opened so") {
  OpenScreen in;
  in.open(customerScreen, [](Form& form) { form.set(Property::WindowState, 1); });
  CHECK(IsIconic(in.window.handle) != FALSE);
  ShowWindow(in.window.handle, SW_RESTORE);
  pump();
  CHECK(in.screen->bounds() == ImportScreen::fixedBounds);
}

}  // namespace
}  // namespace velk
