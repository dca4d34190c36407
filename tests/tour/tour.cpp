#include "tests/tour/tour.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "apps/host/company_tables.h"
#include "apps/host/host_output.h"
#include "base/errors.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/windows/wide_text.h"
#include "samples/company/sample_company.h"
#include "tests/tour/hands.h"
#include "tests/tour/host_look.h"
#include "tests/tour/host_process.h"
#include "tests/tour/posted_check.h"
#include "tests/tour/screen_picture.h"
#include "tests/tour/seen_list.h"
#include "tests/tour/seen_text.h"
#include "tests/tour/seen_windows.h"
#include "tests/tour/tour_imports.h"
#include "tests/tour/user_input.h"

namespace velk {

namespace {

class Tour {
 public:
  Tour(const Places& places, const SeenWindows& host, const TourOptions& options)
      : places_(places),
        documented_(options.documented),
        host_(host),
        texts_(host, options.dotsPerInch),
        hands_(options.byKeyboard ? keyboardHands(host) : mouseHands(host, options.dotsPerInch)) {}

  void run();
  /// The texts that were seen cut in each picture; empty if none was.
  const std::string& cut() const { return cut_; }
  const std::string& outdated() const { return outdated_; }

 private:
  void import(const TourImport& what);
  void browse(HWND screen, const std::wstring& path);
  void exportSalesmen(HWND screen, const std::wstring& path);
  void answerFileDialog(const std::wstring& path, const std::string& pictureName);
  void remap(HWND screen);
  void showTable(std::string_view name);
  void showErrorLog();
  void exit();
  void picture(const std::string& name);
  Picture seen(const std::wstring& documented);

  const Places& places_;
  const std::wstring& documented_;
  const SeenWindows& host_;
  SeenTexts texts_;
  std::unique_ptr<Hands> hands_;
  HWND main_ = nullptr;
  std::string cut_;
  std::string outdated_;
  int pictures_ = 0;
};

// Compared by their pixels: files of equal pictures may differ.
Picture Tour::seen(const std::wstring& documented) {
  if (documented_.empty() || !std::filesystem::exists(documented)) return takePicture(host_);
  const Picture expected = loadPicture(documented);
  Picture now = takePicture(host_, expected);
  const std::string difference = differenceOf(now, expected);
  if (!difference.empty()) outdated_ += fromWide(documented) + ": " + difference + "\n";
  return now;
}

void Tour::picture(const std::string& name) {
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "%02d-", ++pictures_);
  const std::wstring file = toWide(number.data() + name + ".png");
  const Picture now = seen(documented_ + L"\\" + file);
  savePicture(now, places_.pictures + file);
  const std::string cut = texts_.cut(now);
  if (!cut.empty()) cut_ += "\nTexts are cut in " + name + ":" + cut;
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
  hands_->confirm(dialog);
  waitUntilGone(dialog);
}

void Tour::browse(HWND screen, const std::wstring& path) {
  hands_->press(buttonNamed(screen, L"&Browse"));
  answerFileDialog(path, "browse");
  const HWND chosen = childOfClass(screen, L"Edit");
  waitFor("the name on the screen", [&] { return textOf(chosen) == path; });
}

// Exports all salesmen, and leaves them at `path` as a user may have edited them.
void Tour::exportSalesmen(HWND screen, const std::wstring& path) {
  const std::wstring exported = places_.programs + L"salesmen.xls";
  hands_->press(buttonNamed(screen, L"&Export DS"));
  answerFileDialog(exported, "export");
  // Only its size is asked for until it is complete: a file that is open cannot be replaced.
  waitFor("the exported file", [&] {
    std::error_code missing;
    const auto size = std::filesystem::file_size(exported, missing);
    return !missing && size > 0;
  });
  editSalesmen(fromWide(exported), fromWide(path));
  waitUntilIdle(screen);
}

// Takes a field's mapping back by its popup menu and maps it anew by two headers.
void Tour::remap(HWND screen) {
  const HWND preview = childOfClass(screen, L"SysListView32", 0);
  const HWND fields = childOfClass(screen, L"SysListView32", 1);
  const int field = columnTitled(fields, L"Reference");
  const int column = columnTitled(preview, L"Reference");
  const auto shows = [&](const wchar_t* text) {
    waitFor("the mapping row to change", [&] { return cellTexts(fields, field, 1).at(0) == text; });
  };
  shows(L"Reference");
  const HWND menu = hands_->openPopup(fields, field);
  picture("popup");
  hands_->choosePopup(menu);
  shows(L"Not Yet");
  hands_->chooseColumn(preview, column);
  picture("column");
  hands_->chooseColumn(fields, field);
  shows(L"Reference");
}

void Tour::import(const TourImport& what) {
  const std::string& name = what.picture;
  const auto open = [&] {
    hands_->press(buttonNamed(main_, what.button));
    return host_.titled(what.title);
  };
  HWND screen = nullptr;
  // On a loaded machine a click can get lost while the host comes to the front: a user clicks
  // again.
  if (!trapErrors([&] { screen = open(); }, [](const RuntimeError&) {})) screen = open();
  picture(name + "-opened");
  if (what.typeTitle != nullptr) {
    hands_->choose(childOfClass(screen, L"ComboBox"), what.type);
    host_.titled(what.typeTitle);
  }
  if (what.exports) exportSalesmen(screen, what.file);
  browse(screen, what.file);
  hands_->press(buttonNamed(screen, L"&View"));
  const HWND import = buttonNamed(screen, L"&Import");
  waitFor("the file to be shown", [&] { return IsWindowEnabled(import) != FALSE; });
  picture(name + "-viewed");
  if (what.remaps) remap(screen);
  hands_->press(import);
  for (const std::wstring& message : what.messages) {
    const HWND box = host_.messageBoxSaying(message);
    picture(name + "-message");
    hands_->confirm(box);
    waitUntilGone(box);
  }
  waitFor("the import to end", [&] { return IsWindowEnabled(import) == FALSE; });
  waitUntilIdle(screen);
  hands_->press(buttonNamed(screen, L"C&lose"));
  waitUntilGone(screen);
  host_.titled(hostTitle);
  showTable(what.table);
  picture(name + "-posted");
}

void Tour::showTable(std::string_view name) {
  const auto tables = companyTables();
  const auto shown = std::ranges::find(tables, name, &CompanyTable::name);
  hands_->choose(childOfClass(main_, L"ComboBox"), static_cast<int>(shown - tables.begin()));
  const HWND list = childOfClass(main_, L"SysListView32");
  std::vector<std::wstring> titles;
  for (const TableColumn& column : shown->columns) titles.push_back(toWide(column.title));
  waitFor(name, [&] { return columnTitles(list) == titles && rowCount(list) > 0; });
}

void Tour::showErrorLog() {
  hands_->chooseMenu(main_, {.menu = 'V', .menuCenter = 62, .item = 'E', .place = 0, .items = 2});
  const HWND choice = childOfClass(main_, L"ComboBox");
  const auto place = static_cast<LRESULT>(companyTables().size());
  waitFor("the error log to be shown",
          [&] { return SendMessageW(choice, CB_GETCURSEL, 0, 0) == place; });
  picture("error-log");
}

// As the cross does: where the last item of a menu is depends on the fonts of the machine.
void Tour::exit() {
  PostMessageW(main_, WM_CLOSE, 0, 0);
}

void Tour::run() {
  main_ = host_.titled(hostTitle);
  picture("host");
  for (const TourImport& what : tourImports(places_)) import(what);
  showErrorLog();
  exit();
}

}  // namespace

TourResult runTour(const std::wstring& folder, const TourOptions& options) {
  const Places places(folder);
  const std::string company = fromWide(places.company);
  createSampleCompany(company);
  checkErrors(places);
  const std::size_t logged = errorLogLines(places.errorLog).size();
  TourResult result{
      "All that the five files hold was posted or is in the error log; pictures show how", {}};
  {
    const DisplayScale scale(options.dotsPerInch);
    const HostProcess host(places.host, L"--database \"" + places.company + L'"');
    const SeenWindows windows(host.id());
    Tour tour(places, windows, options);
    try {
      tour.run();
      host.waitForEnd();
    } catch (const RuntimeError& error) {
      savePicture(displayedNow(windows), places.pictures + L"failed.png");
      throw RuntimeError(error.number(), error.description() + tour.cut());
    }
    if (!tour.cut().empty()) throw RuntimeError(ErrorNumber::InvalidProcedureCall, tour.cut());
    result.outdated = tour.outdated();
  }
  checkPosted(embeddedConnectionString(company), errorLogLines(places.errorLog).size() - logged);
  // The resolutions between and beyond.
  checkLook(places, options.dotsPerInch == usualDotsPerInch ? 120 : 192);
  return result;
}

}  // namespace velk
