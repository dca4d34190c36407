// Months of use: screens opened and closed, and the DLL loaded and let go, over and over.
#include "platform/windows/forms/window_shell.h"
#include "tests/support/screen_use.h"
#include "tests/windows/dll_host.h"
#include "tests/windows/live_objects.h"
#include "tests/windows/service_stub.h"

namespace velk {
namespace {

/// Nothing that is counted may grow with the repetitions of a cycle; memory by less than a bound.
template <class Cycle>
void checkGrowth(int times, Cycle cycle) {
  constexpr int warmUp = 5;
  for (int i = 0; i < warmUp; ++i) cycle();
  LiveObjects before;
  for (int i = 0; i < times; ++i) cycle();
  const LiveObjects after;
  MESSAGE("growth of " << times << " cycles: " << after.windows - before.windows << " windows, "
                       << after.graphics - before.graphics << " graphics objects, "
                       << after.kernel - before.kernel << " kernel handles, "
                       << after.threadSlots - before.threadSlots << " thread slots, "
                       << static_cast<long long>(after.memory) -
                              static_cast<long long>(before.memory)
                       << " bytes");
  CHECK(after.windows <= before.windows);
  CHECK(after.graphics <= before.graphics);
  CHECK(after.kernel <= before.kernel);
  CHECK(after.threadSlots <= before.threadSlots);
  CHECK(after.memory <= before.memory + allowedGrowth(times));
}

TEST_CASE("cycles: what is never given back is counted") {
  const LiveObjects before;
  const HMENU menu = CreatePopupMenu();
  const HWND window =
      CreateWindowW(L"STATIC", L"", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  const HBRUSH brush = CreateSolidBrush(1);
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const DWORD slot = TlsAlloc();
  void* const memory = HeapAlloc(GetProcessHeap(), 0, 12'345);
  const LiveObjects after;
  CHECK(after.windows > before.windows);
  CHECK(after.graphics > before.graphics);
  CHECK(after.kernel > before.kernel);
  CHECK(after.threadSlots == before.threadSlots + 1);
  CHECK(after.memory >= before.memory + 12'345);
  DestroyMenu(menu);
  DestroyWindow(window);
  DeleteObject(brush);
  CloseHandle(event);
  TlsFree(slot);
  HeapFree(GetProcessHeap(), 0, memory);
}

TEST_CASE("cycles: screens used over and over leave nothing behind") {
  for (const ScreenUse& use : screenUses) {
    CAPTURE(use.file);
    checkGrowth(cycles(sizeof(void*) == 8 ? 70 : 20), [&] {
      WindowShell windows([] { return nullptr; });
      useScreen(use, &windows, pump);
    });
  }
}

TEST_CASE("cycles: the DLL used and let go over and over leaves nothing behind") {
  // Of its own, because another test may still hold the one that all use.
  const auto copy = std::filesystem::temp_directory_path() / "let_go.dll";
  std::filesystem::copy_file(programFolder() / "Velk_OpnImp.dll", copy,
                             std::filesystem::copy_options::overwrite_existing);
  checkGrowth(cycles(20), [&] {
    {
      // Wine leaves keys of the registry open when it looks for a class that nobody has registered.
      const ServiceStub service;
      const ServerDll dll(copy);
      _Connection* connection = nullptr;
      IPictureDisp* icon = nullptr;
      CHECK(dll.makeObject()->ImportCustomerOpening(&connection, &icon) == S_OK);
      pump();
      CHECK(closeScreens().size() == 1);
      CHECK(dll.call("DllCanUnloadNow") == S_OK);
    }
    REQUIRE(GetModuleHandleW(copy.filename().c_str()) == nullptr);
  });
}

}  // namespace
}  // namespace velk
