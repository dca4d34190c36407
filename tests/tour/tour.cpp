#include "tests/tour/tour.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "apps/host/company_tables.h"
#include "apps/host/main_window.h"
#include "base/errors.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/windows/wide_text.h"
#include "samples/company/sample_company.h"
#include "tests/tour/host_process.h"
#include "tests/tour/posted_check.h"
#include "tests/tour/salesman_edits.h"
#include "tests/tour/screen_picture.h"
#include "tests/tour/seen_list.h"
#include "tests/tour/seen_windows.h"
#include "tests/tour/tour_imports.h"
#include "tests/tour/user_input.h"

namespace velk {

namespace {

class Tour {
 public:
  Tour(const Places& places, const SeenWindows& host) : places_(places), host_(host) {}

  void run();
  int pictures() const { return pictures_; }

 private:
  void import(const TourImport& what);
  void browse(HWND screen, const std::wstring& path);
  void exportSalesmen(HWND screen, const std::wstring& path);
  void answerFileDialog(const std::wstring& path, const std::string& pictureName);
  HWND openPopup(POINT at) const;
  void remap(HWND screen);
  void showTable(std::string_view name);
  void showErrorLog();
  void exit();
  void picture(const std::string& name);

  const Places& places_;
  const SeenWindows& host_;
  HWND main_ = nullptr;
  int pictures_ = 0;
};

void clickWhenEnabled(HWND button) {
  waitFor("a button to be enabled", [&] { return IsWindowEnabled(button) != FALSE; });
  click(button);
}

// By mouse and keyboard. A click elsewhere would only close the list, so it has to be closed.
void choose(HWND box, int place) {
  const auto isDropped = [&] { return SendMessageW(box, CB_GETDROPPEDSTATE, 0, 0) != FALSE; };
  click(box);
  waitFor("a list of choices to drop", isDropped);
  press(VK_HOME);
  for (int i = 0; i < place; ++i) press(VK_DOWN);
  press(VK_RETURN);
  waitFor("the choice to be made",
          [&] { return !isDropped() && SendMessageW(box, CB_GETCURSEL, 0, 0) == place; });
}

// A late report of an earlier move makes a drag of the click: as a user would, it tries again.
HWND Tour::openPopup(POINT at) const {
  constexpr ULONGLONG betweenClicks = 3'000;  // milliseconds
  ULONGLONG next = 0;
  HWND menu = nullptr;
  waitFor("the popup menu", [&] {
    const auto windows = host_.all();
    const auto isMenu = [](HWND window) { return classOf(window) == L"#32768"; };
    const auto found = std::ranges::find_if(windows, isMenu);
    if (found != windows.end()) {
      menu = *found;
    } else if (GetTickCount64() >= next) {
      click(at, Button::Right);
      next = GetTickCount64() + betweenClicks;
    }
    return menu != nullptr;
  });
  return menu;
}

void Tour::picture(const std::string& name) {
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "%02d-", ++pictures_);
  savePicture(takePicture(host_), places_.pictures + toWide(number.data() + name + ".png"));
}

// Types the path into the dialog, as the user may instead of clicking through folders.
void Tour::answerFileDialog(const std::wstring& path, const std::string& pictureName) {
  const HWND dialog = host_.ofClass(L"#32770");
  const auto nameBox = [&] { return focusIn(dialog); };
  waitFor("the dialog's name box",
          [&] { return IsChild(dialog, nameBox()) != FALSE && classOf(nameBox()) == L"Edit"; });
  type(path);
  waitFor("the name in the dialog", [&] { return textOf(nameBox()) == path; });
  picture(pictureName);
  press(VK_RETURN);
  waitUntilGone(dialog);
}

void Tour::browse(HWND screen, const std::wstring& path) {
  clickWhenEnabled(buttonNamed(screen, L"&Browse"));
  answerFileDialog(path, "browse");
  const HWND chosen = childOfClass(screen, L"Edit");
  waitFor("the name on the screen", [&] { return textOf(chosen) == path; });
}

// Exports all salesmen, and leaves them at `path` as a user may have edited them.
void Tour::exportSalesmen(HWND screen, const std::wstring& path) {
  const std::wstring exported = places_.pictures + L"salesmen.xls";
  click(buttonNamed(screen, L"&Export DS"));
  answerFileDialog(exported, "export");
  waitFor("the exported file", [&] {
    std::error_code missing;
    const auto size = std::filesystem::file_size(exported, missing);
    return !missing && size > 0;
  });
  editSalesmen(fromWide(exported), fromWide(path));
}

// Takes a field's mapping back with the right button and maps it anew by two clicks on headers.
void Tour::remap(HWND screen) {
  const HWND preview = childOfClass(screen, L"SysListView32", 0);
  const HWND fields = childOfClass(screen, L"SysListView32", 1);
  const int field = columnTitled(fields, L"Reference");
  const int column = columnTitled(preview, L"Reference");
  const auto shows = [&](const wchar_t* text) {
    waitFor("the mapping row to change", [&] { return cellText(fields, 0, field) == text; });
  };
  shows(L"Reference");
  const HWND menu = openPopup(cellPoint(fields, 2, field));
  picture("popup");
  click(menu);
  shows(L"Not Yet");
  click(headerPoint(preview, column));
  click(headerPoint(fields, field));
  shows(L"Reference");
}

void Tour::import(const TourImport& what) {
  const std::string& name = what.picture;
  click(buttonNamed(main_, what.button));
  const HWND screen = host_.titled(what.title);
  picture(name + "-opened");
  if (what.typeTitle != nullptr) {
    choose(childOfClass(screen, L"ComboBox"), what.type);
    host_.titled(what.typeTitle);
  }
  if (what.exports) exportSalesmen(screen, what.file);
  browse(screen, what.file);
  clickWhenEnabled(buttonNamed(screen, L"&View"));
  const HWND import = buttonNamed(screen, L"&Import");
  waitFor("the file to be shown", [&] { return IsWindowEnabled(import) != FALSE; });
  picture(name + "-viewed");
  if (what.remaps) remap(screen);
  click(import);
  for (const std::wstring& message : what.messages) {
    const HWND box = host_.messageBoxSaying(message);
    picture(name + "-message");
    press(VK_RETURN);
    waitUntilGone(box);
  }
  waitFor("the import to end", [&] { return IsWindowEnabled(import) == FALSE; });
  waitUntilIdle(screen);
  click(buttonNamed(screen, L"C&lose"));
  waitUntilGone(screen);
  host_.titled(hostTitle);
  showTable(what.table);
  picture(name + "-posted");
}

void Tour::showTable(std::string_view name) {
  const auto tables = companyTables();
  const auto shown = std::ranges::find(tables, name, &CompanyTable::name);
  choose(childOfClass(main_, L"ComboBox"), static_cast<int>(shown - tables.begin()));
  const HWND list = childOfClass(main_, L"SysListView32");
  std::vector<std::wstring> titles;
  for (const TableColumn& column : shown->columns) titles.push_back(toWide(column.title));
  waitFor(name, [&] { return columnTitles(list) == titles && rowCount(list) > 0; });
}

void Tour::showErrorLog() {
  press('V', true);
  host_.ofClass(L"#32768");
  press('E');
  const HWND choice = childOfClass(main_, L"ComboBox");
  const auto place = static_cast<LRESULT>(companyTables().size());
  waitFor("the error log to be shown",
          [&] { return SendMessageW(choice, CB_GETCURSEL, 0, 0) == place; });
  picture("error-log");
}

// By the menu, as a user may.
void Tour::exit() {
  press('I', true);
  host_.ofClass(L"#32768");
  press('X');
}

void Tour::run() {
  main_ = host_.titled(hostTitle);
  picture("host");
  for (const TourImport& what : tourImports(places_)) import(what);
  showErrorLog();
  exit();
}

}  // namespace

std::string runTour(const std::wstring& folder) {
  const Places places(folder);
  const std::string company = fromWide(places.company);
  createSampleCompany(company);
  const std::size_t logged = errorLogLines(places.errorLog).size();
  const HostProcess host(places.host, L"--database \"" + places.company + L'"');
  const SeenWindows windows(host.id());
  Tour tour(places, windows);
  try {
    tour.run();
    host.waitForEnd();
  } catch (...) {
    savePicture(displayedNow(windows), places.pictures + L"failed.png");
    throw;
  }
  checkPosted(embeddedConnectionString(company), errorLogLines(places.errorLog).size() - logged);
  return "All that the five files hold was posted or is in the error log; " +
         std::to_string(tour.pictures()) + " pictures show how";
}

}  // namespace velk
