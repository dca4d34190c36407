#include "platform/windows/windows_desktop.h"

#include "platform/windows/pending_input.h"
#include "tests/support/temporary_folder.h"
#include "tests/windows/dll_host.h"

namespace velk {
namespace {

TEST_CASE("message boxes") {
  WindowsDesktop desktop;
  const MessageBoxes boxes;
  CHECK(desktop.messageBox("Zoë\r\nis in", 64, "Import") == answerOk);
  CHECK(desktop.messageBox("", 0) == answerOk);
  CHECK(desktop.messageBox("?", 48 + 3) == IDYES);
  // Numbers of errors as styles: whatever Windows makes of them, the user sees the text.
  for (const std::int32_t style : {53, 75, 70, 7, 15, -2147217871}) {
    CAPTURE(style);
    CHECK(desktop.messageBox("failed", style) != 0);
    CHECK(boxes.shown().back().starts_with("Velk_OpnImp|failed|"));
  }
  CHECK(boxes.shown()[0] == "Import|Zoë\r\nis in|OK");
  CHECK(boxes.shown()[1] == "Velk_OpnImp||OK");
  CHECK(boxes.shown()[2] == "Velk_OpnImp|?|Yes|No|Cancel");
  CHECK(boxes.shown().size() == 9);
}

TEST_CASE("windows: dropped input is gone, the request to end the loop is not") {
  pump();
  PostQuitMessage(9);
  PostThreadMessageW(GetCurrentThreadId(), WM_KEYDOWN, VK_RETURN, 1);
  dropPendingInput();
  MSG message{};
  CHECK(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE);
  CHECK(message.message == WM_QUIT);
  CHECK(message.wParam == 9);
  CHECK(PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE) == FALSE);
}

TEST_CASE("while a message is shown the thread's windows take no input") {
  const auto window = [] {
    return CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 99, 99,
                           nullptr, nullptr, nullptr, nullptr);
  };
  const HWND windows[] = {window(), window()};
  MessageBoxes boxes;
  for (const HWND active : {windows[0], windows[1], HWND{nullptr}}) {
    SetActiveWindow(active);
    boxes.onShown = [&] {
      for (const HWND each : windows) CHECK_FALSE(IsWindowEnabled(each));
    };
    WindowsDesktop().messageBox("x", 0);
    for (const HWND each : windows) CHECK(IsWindowEnabled(each));
  }
  // One that its host has disabled stays so, whether it is the active one or not.
  for (const HWND active : windows) {
    SetActiveWindow(active);
    EnableWindow(windows[1], FALSE);
    WindowsDesktop().messageBox("x", 0);
    CHECK_FALSE(IsWindowEnabled(windows[1]));
    CHECK(IsWindowEnabled(windows[0]));
    EnableWindow(windows[1], TRUE);
  }
  CHECK(boxes.shown().size() == 5);
  for (const HWND each : windows) DestroyWindow(each);
}

TEST_CASE("windows: salesmen's files are looked for in the application's folder each time") {
  const TemporaryFolder folder;
  Host host;
  const Window screen(host.open(masters));
  chooseSalesmen(screen);
  host.boxes.chooseFile(folder.write("book.xls", ""));
  for (int i = 0; i < 2; ++i) {
    screen.click("&Browse");
    CHECK(host.boxes.folder() == fromWide(programFolder().wstring()));
  }
}

}  // namespace
}  // namespace velk
