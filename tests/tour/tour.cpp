#include "tests/tour/tour.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "apps/host/company_tables.h"
#include "apps/host/main_window.h"
#include "base/errors.h"
#include "platform/windows/wide_text.h"
#include "tests/tour/posted_check.h"
#include "tests/tour/salesman_edits.h"
#include "tests/tour/screen_picture.h"
#include "tests/tour/seen_windows.h"
#include "tests/tour/user_input.h"

namespace velk {

namespace {

/// One import: where it is opened, what is chosen, what the user is told, where its result shows.
struct TourImport {
  std::string picture;  ///< how the names of its pictures begin
  const wchar_t* button;
  const wchar_t* title;
  int type = 0;  ///< place in the master screen's list of types
  const wchar_t* typeTitle = nullptr;
  std::wstring file;  ///< full path
  bool remaps = false;
  bool exports = false;  ///< makes the file first: an export, edited
  std::vector<std::wstring> messages;
  std::string_view table;
};

std::vector<TourImport> tourImports(const TourPlan& plan) {
  const std::wstring samples = plan.samplesFolder + L"\\";
  return {{.picture = "customers",
           .button = L"&Customer opening...",
           .title = L"Import Customer Opening",
           .file = samples + L"customer_opening.csv",
           .remaps = true,
           .messages = {L"Check The Error Log " + plan.errorLog},
           .table = "Customer opening documents"},
          {.picture = "vendors-opening",
           .button = L"V&endor opening...",
           .title = L"Import VendorOpening",
           .file = samples + L"vendor_opening.csv",
           .messages = {L"Import Successfull", L"Check The Error Log"},
           .table = "Vendor opening documents"},
          {.picture = "banks",
           .button = L"&Masters...",
           .title = L"Import - Bank & Branch",
           .file = samples + L"bank_branch.csv",
           .messages = {L"Import Successfull"},
           .table = "Banks and branches"},
          {.picture = "vendors",
           .button = L"&Masters...",
           .title = L"Import - Bank & Branch",
           .type = 1,
           .typeTitle = L"Import - Vendor",
           .file = samples + L"vendor.csv",
           .messages = {L"Import Successfull"},
           .table = "Vendors"},
          {.picture = "salesmen",
           .button = L"&Masters...",
           .title = L"Import - Bank & Branch",
           .type = 2,
           .typeTitle = L"Import - Salesman",
           .file = toWide(plan.pictureFolder) + L"\\salesmen-edited.xls",
           .exports = true,
           .messages = {L"Salesman Imported.\r\nProcessed : 7\r\nUnProcessed : 1\r\n Please check "
                        L"the error log."},
           .table = "Salesmen"}};
}

class Tour {
 public:
  explicit Tour(const TourPlan& plan) : plan_(plan) {}

  void run();
  int pictures() const { return pictures_; }

 private:
  void import(const TourImport& what);
  void browse(HWND screen, const std::wstring& path);
  void exportSalesmen(HWND screen, const std::wstring& path);
  void answerFileDialog(const std::wstring& path, const std::string& pictureName);
  void remap(HWND screen);
  void showTable(std::string_view name);
  void showErrorLog();
  void picture(const std::string& name);

  const TourPlan& plan_;
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
HWND openPopup(POINT at) {
  constexpr ULONGLONG betweenClicks = 3'000;  // milliseconds
  ULONGLONG next = 0;
  HWND menu = nullptr;
  waitFor("the popup menu", [&] {
    const auto windows = topWindows();
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
  savePicture(takePicture(), plan_.pictureFolder + "\\" + number.data() + name + ".png");
}

// Types the path into the dialog, as the user may instead of clicking through folders.
void Tour::answerFileDialog(const std::wstring& path, const std::string& pictureName) {
  const HWND dialog = windowOfClass(L"#32770");
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
  const std::wstring exported = toWide(plan_.pictureFolder) + L"\\salesmen.xls";
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
  const HWND screen = windowTitled(what.title);
  picture(name + "-opened");
  if (what.typeTitle != nullptr) {
    choose(childOfClass(screen, L"ComboBox"), what.type);
    windowTitled(what.typeTitle);
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
    const HWND box = messageBoxSaying(message);
    picture(name + "-message");
    press(VK_RETURN);
    waitUntilGone(box);
  }
  waitFor("the import to end", [&] { return IsWindowEnabled(import) == FALSE; });
  waitUntilIdle(screen);
  click(buttonNamed(screen, L"C&lose"));
  waitUntilGone(screen);
  windowTitled(hostTitle);
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
  windowOfClass(L"#32768");
  press('E');
  const HWND choice = childOfClass(main_, L"ComboBox");
  const auto place = static_cast<LRESULT>(companyTables().size());
  waitFor("the error log to be shown",
          [&] { return SendMessageW(choice, CB_GETCURSEL, 0, 0) == place; });
  picture("error-log");
}

void Tour::run() {
  main_ = windowTitled(hostTitle);
  picture("host");
  for (const TourImport& what : tourImports(plan_)) import(what);
  showErrorLog();
}

}  // namespace

std::string runTour(const TourPlan& plan) {
  const std::size_t logged = errorLogLines(plan.errorLog).size();
  Tour tour(plan);
  try {
    tour.run();
  } catch (...) {
    savePicture(displayedNow(), plan.pictureFolder + "\\failed.png");
    throw;
  }
  checkPosted(plan.connectionString, errorLogLines(plan.errorLog).size() - logged);
  return "All that the five files hold was posted or is in the error log; " +
         std::to_string(tour.pictures()) + " pictures show how";
}

}  // namespace velk
