// A screen as it is used from its opening to its end, over and over.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <string_view>

#include "tests/support/test_world.h"

namespace velk {

struct ScreenUse {
  TestWorld::EntryPoint entry;
  std::string_view file;
};
inline constexpr ScreenUse screenUses[] = {
    {&Velk_ClsOpnImp::ImportCustomerOpening,
     "Customer ID,Bill Amount,Balance\r\nP1,9,4\r\nP2,-5,2"},
    {&Velk_ClsOpnImp::ImportVendorOpening, "Vendor ID,Bill Amount,Balance\r\nP1,9,4\r\nP2,-5,2"},
    {&Velk_ClsOpnImp::ImportBankBranchOpening,
     "Bank Code,Bank Name,Branch Code,Branch Name\r\nB1,One,R1,First\r\nB2,Two,R2,Second"}};

/// Opens a screen, headless or in `windows`, views a file, unmaps a column and maps it again,
/// imports the two records and closes. `pump` runs between the steps.
template <class Pump>
void useScreen(const ScreenUse& use, FormShell* windows, Pump pump) {
  TestWorld world(windows);
  std::shared_ptr<ImportScreen> screen;
  world.host->onReady = [&](Form& shown) {
    screen = std::dynamic_pointer_cast<ImportScreen>(shown.shared_from_this());
  };
  (Velk_ClsOpnImp(world.module).*use.entry)(world.database, nullptr);
  pump();
  world.view(*screen, use.file);
  pump();
  for (ListView* list : {&screen->lv, &screen->mappingList}) list->userColumnClick(0);
  pump();
  screen->cmdImport.userClick();
  pump();
  screen->cmdExit.userClick();
  pump();
  REQUIRE_FALSE(screen->isOpen());
  REQUIRE(world.database->procedureCalls().size() == 4);
}

/// How often a test repeats something: so often, or OPNIMP_CYCLES times if that is set.
inline int cycles(int usual) {
  const char* const asked = std::getenv("OPNIMP_CYCLES");
  return asked == nullptr ? usual : std::atoi(asked);
}
/// The growth of memory that may show in them: 256 KB in 10,000.
inline std::size_t allowedGrowth(int cycles) {
  return std::size_t{256} * 1024 * static_cast<std::size_t>(cycles) / 10'000;
}

}  // namespace velk
