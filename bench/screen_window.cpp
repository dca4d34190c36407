// Ours, under Windows or Wine: what a screen does in a real window, and the same without one.
//
//   bench_screen_window WHAT FILE FOLDER     FOLDER takes the error log
//     view-window      a click on View, until all is painted
//     view-headless    the same without a window
//     repaint          one repaint of the mapping list
//     map              a click on a field's header: a file column goes under it
//     type             another type chosen on the master screen
//     memory           what each further screen takes
#include <windows.h>

#include <string_view>

#include "bench/measurement.h"
#include "bench/window_measurement.h"
#include "component/Velk_ClsOpnImp.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "platform/headless/headless_desktop.h"
#include "platform/headless/headless_host_service.h"
#include "platform/windows/forms/window_shell.h"
#include "platform/windows/windows_files.h"

using namespace velk;
using namespace velk::bench;

namespace {

/// Keeps what is shown, in windows or not.
struct Shell final : FormShell {
  explicit Shell(bool windows) : inWindows(windows) {}
  void show(std::shared_ptr<Form> form) override {
    shown = form;
    if (inWindows) real.show(std::move(form));
  }
  void closed(Form& form) noexcept override { real.closed(form); }
  Menu* popup(Menu&) override { return nullptr; }

  bool inWindows;
  std::shared_ptr<Form> shown;
  WindowShell real{[] { return nullptr; }};
};

HWND windowOf(const Form& form) {
  return reinterpret_cast<HWND>(static_cast<INT_PTR>(form.number(Property::hWnd)));
}

void settle(const Form& form) {
  paintAll(windowOf(form));
}

struct Screen {
  Screen(bool inWindow, const char* folder,
         void (Velk_ClsOpnImp::*open)(const std::shared_ptr<Connection>&,
                                      const std::shared_ptr<const Picture>&) =
             &Velk_ClsOpnImp::ImportCustomerOpening)
      : shell(inWindow),
        desktop(
            folder,
            [] {
              return dateFromCivil({2008, 6, 15});
            },
            [](const Message&) {}),
        module({files,
                desktop,
                shell,
                CodePage::windows1252(),
                [] { return std::make_shared<HeadlessHostService>([](const Message&) {}); },
                {}}) {
    Velk_ClsOpnImp component(module);
    (component.*open)(nullptr, nullptr);
    settle(form());
  }

  ImportScreen& form() const { return dynamic_cast<ImportScreen&>(*shell.shown); }
  void browse(const char* file) {
    desktop.chooseFile(file);
    form().CmdBrowse.userClick();
    settle(form());
  }
  void view(const char* file) {
    browse(file);
    form().cmdview.userClick();
    settle(form());
  }

  WindowsFileSystem files;
  Shell shell;
  HeadlessDesktop desktop;
  Velk_ModOpnImp module;
};

void measureView(bool inWindow, const char* file, const char* folder) {
  Screen screen(inWindow, folder);
  screen.browse(file);
  Stopwatch watch;
  screen.form().cmdview.userClick();
  settle(screen.form());
  watch.stop();
  watch.report(screen.form().lv.rowCount());
}

void measureRepaint(const char* file, const char* folder) {
  Screen screen(true, folder);
  screen.view(file);
  Stopwatch watch;
  repaint(windowOf(screen.form()));
  watch.stop();
  watch.report(screen.form().lv.rowCount());
}

void measureMapping(const char* file, const char* folder) {
  Screen screen(true, folder);
  screen.view(file);
  screen.form().lv.userColumnClick(1);
  Stopwatch watch;
  screen.form().mappingList.userColumnClick(1);
  watch.stop();
  watch.report(screen.form().lv.rowCount());
}

void measureType(const char* file, const char* folder) {
  Screen screen(true, folder, &Velk_ClsOpnImp::ImportBankBranchOpening);
  screen.view(file);
  const std::size_t rows = screen.form().lv.rowCount();
  Stopwatch watch;
  dynamic_cast<Velk_frmBankBranch_OpnImp&>(screen.form()).cboType.userChoose(1);
  watch.stop();
  watch.report(rows);
}

void measureMemory(const char* folder) {
  Screen first(true, folder);
  Velk_ClsOpnImp component(first.module);
  reportMemoryOfEach([&] {
    component.ImportCustomerOpening(nullptr, nullptr);
    settle(first.form());
  });
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 4, "usage: bench_screen_window WHAT FILE FOLDER");
    const std::string_view what = argv[1];
    if (what == "view-window" || what == "view-headless") {
      measureView(what == "view-window", argv[2], argv[3]);
    } else if (what == "repaint") {
      measureRepaint(argv[2], argv[3]);
    } else if (what == "map") {
      measureMapping(argv[2], argv[3]);
    } else if (what == "memory") {
      measureMemory(argv[3]);
    } else {
      require(what == "type", "unknown measurement");
      measureType(argv[2], argv[3]);
    }
  });
}
