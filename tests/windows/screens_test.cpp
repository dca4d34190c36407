// Screens as real windows, driven as a user drives them: by the messages of mouse and keyboard.
#include <windows.h>

#include <commctrl.h>

#include <functional>

#include "mapping/Velk_frmCustOpn_OpnImp.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "opening/opening_import.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "platform/windows/forms/window_shell.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_desktop.h"
#include "platform/windows/windows_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_world.h"
#include "tests/windows/host_ado.h"
#include "tests/windows/message_boxes.h"
#include "tests/windows/screen_windows.h"

namespace velk {
namespace {

struct Screens {
  WindowShell shell{[] { return nullptr; }};
  TestWorld world{&shell};

  std::shared_ptr<Velk_frmCustOpn_OpnImp> open() {
    const auto screen = std::make_shared<Velk_frmCustOpn_OpnImp>(
        world.module, std::make_unique<OpeningImportButton>(customerOpening));
    screen->initForm(world.database, nullptr);
    pump();
    return screen;
  }
};

constexpr std::string_view file =
    "Name,Code,Bill,Balance\r\n\"Zo\xEB, Ltd\",C1,100,60\r\nB,C2,-50,20\r\n";

TEST_CASE("windows: a customer import by mouse") {
  Screens screens;
  const auto screen = screens.open();
  const Window window(*screen);
  CHECK(textOf(window.handle) == "Import Customer Opening");
  CHECK(IsWindowEnabled(window.button("&View")) == FALSE);
  screens.world.files.contents["in.csv"] = file;
  screens.world.desktop.chooseFile("in.csv");
  window.click("&Browse");
  window.click("&View");
  CHECK(window.rows(0) == 2);
  CHECK(window.cell(0, 1, 0) == "Zo\u00EB Ltd");
  CHECK(window.cell(1, 1, 1) == "Not Yet");
  for (const auto& [column, field] : {std::pair(1, 0), {2, 4}, {3, 5}}) {
    window.clickHeader(0, column);
    window.clickHeader(1, field);
  }
  CHECK(window.cell(1, 1, 4) == "Bill");
  CHECK(window.cell(1, 3, 0) == "C2");
  // A second click while a message of the first run is shown starts nothing.
  screens.world.database->answerRows("select count(*) from Customer where CustomerID=N'", {{0}});
  screens.world.onMessage = [&] { window.click("&Import"); };
  window.click("&Import");
  CHECK(screens.world.messages.size() == 1);
  CHECK(window.rows(1) == 0);
  CHECK(IsWindowEnabled(window.button("&Import")) == FALSE);
  CHECK(textOf(inside(window.handle, [](HWND w) { return textOf(w) == "in.csv"; })).empty());
  CHECK(isOfClass(GetFocus(), L"Edit"));  // not Close, which an Enter too many would press
}

/// The master screen on the machine's own dialogs and files, over the host's ADO objects.
struct SalesmenScreen {
  TemporaryFolder folder;
  HostAdo ado;
  Texts told;  ///< by the host
  WindowsFileSystem files;
  WindowsDesktop desktop;
  WindowShell shell{[] { return nullptr; }};
  Velk_ModOpnImp module{{files, desktop, shell, CodePage::windows1252(),
                         [this] {
                           return std::make_shared<HeadlessHostService>(
                               [this](const Message& message) { told.push_back(message.prompt); });
                         },
                         [this] { return std::make_unique<XlsSpreadsheet>(files); }}};
  std::shared_ptr<Velk_frmBankBranch_OpnImp> screen =
      std::make_shared<Velk_frmBankBranch_OpnImp>(module);
  MessageBoxes boxes;

  SalesmenScreen() {
    screen->initForm(ado.database, nullptr);
    chooseSalesmen(Window(*screen));
  }

  void exportTo(const std::string& path) {
    boxes.chooseFile(path);
    Window(*screen).click("&Export DS");
  }
};

TEST_CASE("windows: salesmen exported and imported, and workbooks that others hold") {
  SalesmenScreen salesmen;
  const Window window(*salesmen.screen);
  const std::string path = salesmen.folder.path("Zoë.xls");
  salesmen.exportTo(salesmen.folder.path("Zoë"));  // the dialog adds the extension
  salesmen.boxes.chooseFile(path);
  for (const char* button : {"&Browse", "&View"}) window.click(button);
  CHECK(window.rows(0) == 8);
  CHECK(window.cell(1, 2, 0) == "Anil Kamble");
  CHECK(window.cell(0, 8, 0) == "Noël Pinto");
  window.click("&Import");
  CHECK(salesmen.told == Texts{"Salesman Imported.\r\nProcessed : 7\r\nUnProcessed : 1\r\n "
                               "Please check the error log."});
  CHECK(salesmen.boxes.shown().empty());
  salesmen.folder.write("Zoë.xls", "held");
  const auto held = salesmen.files.openInput(path);
  salesmen.exportTo(path);
  CHECK(salesmen.folder.read("Zoë.xls") == "held");
  REQUIRE(salesmen.boxes.shown().size() == 2);  // the first is the dialog's: replace the file?
  CHECK(salesmen.boxes.shown().back() ==
        "Salesman Export|File is already open or accessed by some other process. Please close "
        "that Excel File.|OK");
}

TEST_CASE("windows: salesmen's files are looked for in the application's folder each time") {
  SalesmenScreen salesmen;
  salesmen.folder.write("book.xls", "");
  salesmen.boxes.chooseFile(salesmen.folder.path("book.xls"));
  for (int i = 0; i < 2; ++i) {
    Window(*salesmen.screen).click("&Browse");
    CHECK(salesmen.boxes.folder() == salesmen.desktop.applicationFolder());
  }
}

TEST_CASE("windows: the keyboard") {
  Screens screens;
  const auto screen = screens.open();
  const Window window(*screen);
  screens.world.files.contents["in.csv"] = file;
  screens.world.desktop.chooseFile("in.csv");
  const HWND text = GetFocus();
  PostMessageW(text, WM_CHAR, 'x', 1);
  pump();
  CHECK(screen->TxtFileName.value() == "x");
  press(VK_TAB);
  CHECK(GetFocus() == window.button("&Browse"));
  press(VK_RETURN);
  CHECK(textOf(text) == "in.csv");
  PostMessageW(GetFocus(), WM_SYSCHAR, 'v', 1 << 29);
  pump();
  CHECK(window.rows(0) == 2);
  press(VK_F4);
  CHECK(screen->isOpen());
  press(VK_F4, true);
  CHECK_FALSE(screen->isOpen());
  CHECK(IsWindow(window.handle) == FALSE);
}

TEST_CASE("windows: a fixed size, also when it was maximised or dragged") {
  Screens screens;
  const auto screen = screens.open();
  const Window window(*screen);
  const RECT fixed = window.outer();
  const std::function<void()> changes[] = {
      [&] { SetWindowPos(window.handle, nullptr, 30, 40, 500, 300, SWP_NOZORDER); },
      [&] { ShowWindow(window.handle, SW_MAXIMIZE); }};
  for (const auto& change : changes) {
    change();
    pump();
    const RECT now = window.outer();
    CHECK(IsZoomed(window.handle) == FALSE);
    CHECK(EqualRect(&now, &fixed) != FALSE);
  }
  ShowWindow(window.handle, SW_MINIMIZE);
  pump();
  CHECK(IsIconic(window.handle) != FALSE);
}

TEST_CASE("windows: several at once") {
  Screens screens;
  const auto one = screens.open();
  const auto two = screens.open();
  screens.world.view(*one, file);
  pump();
  CHECK(Window(*one).rows(0) == 2);
  CHECK(Window(*two).rows(0) == 0);
  SendMessageW(Window(*one).handle, WM_CLOSE, 0, 0);
  CHECK_FALSE(one->isOpen());
  CHECK(two->isOpen());
  DestroyWindow(Window(*two).handle);  // as a host does that takes its windows down
  CHECK_FALSE(two->isOpen());
}

void CALLBACK chooseFromMenu(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND menu = FindWindowW(L"#32768", nullptr);
  if (menu == nullptr) return;
  KillTimer(nullptr, timer);
  PostMessageW(menu, WM_KEYDOWN, VK_DOWN, 1);
  PostMessageW(menu, WM_KEYDOWN, VK_RETURN, 1);
}

TEST_CASE("windows: the mapping list's popup menu unmaps the column under the pointer") {
  Screens screens;
  const auto screen = screens.open();
  const Window window(*screen);
  screens.world.view(*screen, "Date,Balance\r\n1/2/2008,5\r\n");
  pump();
  CHECK(window.cell(1, 1, 5) == "Balance");
  RECT cell{};
  cell.top = 5;  // the column, and on return its place
  SendMessageW(window.list(1), LVM_GETSUBITEMRECT, 0, reinterpret_cast<LPARAM>(&cell));
  const LPARAM where = MAKELPARAM(cell.left + 5, cell.top + 5);
  PostMessageW(window.list(1), WM_RBUTTONDOWN, MK_RBUTTON, where);
  PostMessageW(window.list(1), WM_RBUTTONUP, 0, where);
  // The menu runs a message loop of its own: a timer chooses its item.
  SetTimer(nullptr, 0, 50, chooseFromMenu);
  for (int i = 0; i < 200 && window.cell(1, 1, 5) == "Balance"; ++i) {
    pump();
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
  }
  CHECK(window.cell(1, 1, 5) == "Not Yet");
  CHECK(window.cell(1, 1, 3) == "Date");
}

}  // namespace
}  // namespace velk
