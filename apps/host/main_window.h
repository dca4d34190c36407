// The host's main window: a menu, a button for each import, and a list of one of the company's
// tables at a time.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "apps/host/company_tables.h"
#include "apps/host/table_list.h"
#include "platform/windows/handles.h"
#include "platform/windows/scale.h"

namespace velk {

/// The program's icon; it lives as long as the program.
HICON hostIcon();

/// What the user can open from the main window, in the order of menu and buttons.
enum class ImportScreenKind { CustomerOpening, VendorOpening, Masters };

class MainWindow {
 public:
  /// What either raises is shown to the user, in a message box.
  struct Actions {
    std::function<void(ImportScreenKind)> openImport;
    /// The rows of a table by its place in companyTables(); after the last table, those of the
    /// error log.
    std::function<std::vector<TableRow>(std::size_t)> rows;
  };

  /// Shown at once. The end of the window ends the thread's message loop.
  explicit MainWindow(Actions actions);
  ~MainWindow();
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  /// Reads the shown table again, as soon as the thread's message loop comes to it.
  void refreshSoon() const;
  /// Moves the focus to a button. Error 9 when there is no such one.
  void focusButton(int element);
  /// The thread's message loop until the window ends; the exit status.
  int run();

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
  int scaled(int size) const;
  HWND makeControl(const wchar_t* type, const wchar_t* text, DWORD style, WORD id = 0);
  void makeControls();
  void fillChoice() const;
  SIZE smallestSize() const;
  void arrange(int width, int height) const;
  void command(WORD id, WORD code);
  LRESULT notify(NMHDR& header) const;
  void showTable(std::size_t table);
  void refresh();
  void refreshQuietly();
  void say(const std::wstring& text) const;

  Actions actions_;
  HWND handle_ = nullptr;
  std::vector<HWND> buttons_;
  HWND choiceLabel_ = nullptr;
  HWND choice_ = nullptr;
  HWND listLabel_ = nullptr;
  HWND list_ = nullptr;
  HWND status_ = nullptr;
  Scale scale_ = Scale::ofDisplay();
  UniqueFont font_;
  std::size_t shown_ = 0;
  TableList table_;
};

}  // namespace velk
