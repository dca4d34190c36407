#include "tests/tour/host_look.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "apps/host/host_output.h"
#include "base/errors.h"
#include "platform/windows/wide_text.h"
#include "tests/tour/hands.h"
#include "tests/tour/host_process.h"
#include "tests/tour/seen_text.h"
#include "tests/tour/user_input.h"

namespace velk {

namespace {

[[noreturn]] void fail(const std::string& what) {
  throw RuntimeError(ErrorNumber::InvalidProcedureCall, what);
}

RECT placeOf(HWND window) {
  RECT at{};
  GetWindowRect(window, &at);
  return at;
}

void checkUncut(const SeenWindows& host, int dotsPerInch) {
  const std::string cut = SeenTexts(host, dotsPerInch).cut(takePicture(host));
  if (!cut.empty()) fail("Cut at " + std::to_string(dotsPerInch) + " dots per inch:" + cut);
}

void checkScale(HWND window, int dotsPerInch) {
  const RECT at = placeOf(window);
  const int wanted = MulDiv(940, dotsPerInch, usualDotsPerInch);
  if (at.right - at.left != wanted) {
    fail("The host is " + std::to_string(at.right - at.left) + " pixels wide, not " +
         std::to_string(wanted));
  }
}

/// Waits for a message box that says all of these, and answers it.
void confirmError(const SeenWindows& host, const std::vector<std::wstring>& parts) {
  const HWND box = host.ofClass(L"#32770");
  const auto says = [&](HWND child) {
    const std::wstring text = textOf(child);
    return std::ranges::all_of(
        parts, [&](const auto& part) { return text.find(part) != std::wstring::npos; });
  };
  waitFor("a message box about " + fromWide(parts.front()),
          [&] { return std::ranges::any_of(childWindows(box), says); });
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  waitUntilGone(box);
}

}  // namespace

void checkLook(const Places& places, int dotsPerInch) {
  const DisplayScale scale(dotsPerInch);
  const HostProcess process(places.host, L"--database \"" + places.company + L'"');
  const SeenWindows host(process.id());
  const HWND window = host.titled(hostTitle);
  checkScale(window, dotsPerInch);
  const auto hands = keyboardHands(host);
  for (const TourImport& import : tourImports(places)) {
    if (import.type != 0) continue;
    hands->press(buttonNamed(window, import.button));
    const HWND screen = host.titled(import.title);
    checkUncut(host, dotsPerInch);
    hands->press(buttonNamed(screen, L"C&lose"));
    waitUntilGone(screen);
    host.titled(hostTitle);
  }
  PostMessageW(window, WM_CLOSE, 0, 0);
  process.waitForEnd();
}

void checkErrors(const Places& places) {
  const std::wstring absent = places.programs + L"absent.db";
  const HostProcess unopened(places.host, L"--database \"" + absent + L'"');
  confirmError(SeenWindows(unopened.id()), {absent, L"--database"});
  unopened.waitForEnd(4);
  const std::wstring strange = places.programs + L"strange.db";
  std::ofstream(std::filesystem::path(strange)).close();  // a database without any table
  const HostProcess unread(places.host, L"--database \"" + strange + L'"');
  const SeenWindows host(unread.id());
  confirmError(host, {strange, L"Customer opening documents", L"F5"});
  PostMessageW(host.titled(hostTitle), WM_CLOSE, 0, 0);
  unread.waitForEnd();
}

}  // namespace velk
