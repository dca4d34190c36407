// Rules of the screens that show in their windows only: colours, size and place, what is said.
#include <windows.h>

#include <functional>
#include <string>

#include "tests/windows/open_screen.h"

namespace velk {
namespace {

TEST_CASE("windows: colours that the database has as unsigned numbers are painted") {
  for (const ScreenMaker make : allScreens) {
    OpenScreen in;
    in.world.database->answerRows("Select * From ColorSettings",
                                  {{0, 2147483661.0, 2147483662.0}});  // of selected text
    in.open(make);
    REQUIRE(IsWindowVisible(in.window.handle) != FALSE);
    UpdateWindow(in.window.handle);
    const HDC dc = GetDC(in.window.handle);
    CHECK(GetPixel(dc, 2, 2) == GetSysColor(COLOR_HIGHLIGHT));
    ReleaseDC(in.window.handle, dc);
    CHECK(in.world.log().empty());
  }
}

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

TEST_CASE("windows: an empty first line takes no record from a file of master data") {
  const std::pair<ScreenMaker, int> rows[] = {{customerScreen, 2}, {masterScreen, 3}};
  for (const auto& row : rows) {
    OpenScreen in;
    in.open(row.first);
    in.world.view(*in.screen, "\r\na,b\r\nc,d\r\n");
    pump();
    CHECK(in.window.rows(0) == 2);
    CHECK(in.window.rows(1) == row.second);
  }
}

TEST_CASE("windows: users are told what to do in words of theirs") {
  const auto records = [](int count) {
    std::string content = "Customer ID,Vendor ID,Bill Amount,Balance,Date\r\n";
    for (int i = 0; i < count; ++i) content += "C,V,1,1,\r\n";
    return content;
  };
  const auto tooMany = [](const std::string& count) {
    return "host 48: The file has " + count +
           " records; at most 32,766 can be imported in one go. Split the file.";
  };
  const struct {
    ScreenMaker make;
    std::string content;
    bool browses;  ///< and cancels, before Import
    std::string message;
    std::string log;
  } rows[] = {
      {customerScreen, records(3), true,
       "box 48: The list has changed since View. Press View again.",
       "(35600): Index out of bounds\n"},
      {customerScreen, records(32'767), false, tooMany("32,767"),
       "(6): Velk_frmCustOpn_OpnImp : cmdview_Click - Overflow\n"},
      {vendorScreen, records(40'000), false, tooMany("40,000"),
       "(6): Velk_frmVenOpn_OpnImp : cmdview_Click - Overflow\n"},
      {vendorScreen, records(1) + "C,V,1,1,31/02/2008\r\n", false,
       "box 16: The import stopped at record 2: Type mismatch: Invalid Date(31/02/2008) for Vendor "
       "- V. Records before it are posted; importing this file again would post them twice.",
       "(13): The import stopped at record 2: Type mismatch. Records before it are posted; "
       "importing "
       "this file again would post them twice.\n"}};
  for (const auto& row : rows) {
    CAPTURE(row.message);
    OpenScreen in;
    in.open(row.make);
    in.world.view(*in.screen, row.content);
    pump();
    in.world.desktop.chooseFile(std::nullopt);
    if (row.browses) in.window.click("&Browse");
    in.window.click("&Import");
    CHECK(in.world.messages == Texts{row.message});
    CHECK(in.world.log() == row.log);
    const bool refused = row.content.size() > 100'000;
    CHECK((IsWindowEnabled(in.window.button("&Import")) == FALSE) == refused);
  }
}

TEST_CASE("windows: a stop on the screen of master data is no warning of posting twice") {
  OpenScreen in;
  in.open(masterScreen);
  in.world.view(*in.screen,
                "Bank Code,Bank Name,Branch Code,Branch Name\r\nA,B,C,D\r\nE,F,G,H\r\n");
  in.world.database->onCall = [&](const FakeCall& call) {
    if (call.text == "sp_insert_branch") in.screen->mappingList.clearRows();
  };
  in.window.click("&Import");
  CHECK(in.world.messages ==
        Texts{"box 48: The import stopped at record 2: The list has changed since View. Press "
              "View again. Records before it are posted."});
}

}  // namespace
}  // namespace velk
