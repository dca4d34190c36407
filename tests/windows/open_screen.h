// A screen of each kind as a window, on files, messages and a database in memory.
#pragma once

#include <functional>
#include <memory>

#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "opening/Velk_frmVenOpn_OpnImp.h"
#include "opening/opening_import.h"
#include "platform/windows/forms/window_shell.h"
#include "tests/support/test_world.h"
#include "tests/windows/screen_windows.h"

namespace velk {

using ScreenMaker = std::shared_ptr<ImportScreen> (*)(Velk_ModOpnImp&);

template <class Screen, const OpeningImportKind& kind>
std::shared_ptr<ImportScreen> openingScreen(Velk_ModOpnImp& module) {
  return std::make_shared<Screen>(module, std::make_unique<OpeningImportButton>(kind));
}
inline std::shared_ptr<ImportScreen> masterScreen(Velk_ModOpnImp& module) {
  return std::make_shared<Velk_frmBankBranch_OpnImp>(module);
}

inline constexpr ScreenMaker customerScreen =
    openingScreen<Velk_frmCustOpn_OpnImp, customerOpening>;
inline constexpr ScreenMaker vendorScreen = openingScreen<Velk_frmVenOpn_OpnImp, vendorOpening>;
inline constexpr ScreenMaker allScreens[] = {customerScreen, vendorScreen, masterScreen};

struct OpenScreen {
  WindowShell shell{[] { return nullptr; }};
  TestWorld world{&shell};
  std::shared_ptr<ImportScreen> screen;
  Window window{HWND{nullptr}};

  /// `atStart` is what the host does before the screen is shown.
  void open(ScreenMaker make, const std::function<void(Form&)>& atStart = {},
            const std::shared_ptr<const Picture>& icon = nullptr) {
    screen = make(world.module);
    if (atStart) atStart(*screen);
    screen->initForm(world.database, icon);
    window = Window(*screen);
    pump();
  }
  HWND ofClass(std::wstring_view wanted) const {
    return inside(window.handle, [&](HWND child) { return isOfClass(child, wanted); });
  }
};

}  // namespace velk
