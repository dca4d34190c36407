// A host of the component's DLL, and what a user does on a screen of it.
#pragma once

#include <fstream>
#include <functional>
#include <optional>
#include <thread>

#include "apps/host/ado/ado_command_object.h"
#include "apps/host/ado/ado_connection_object.h"
#include "apps/host/class_registration.h"
#include "tests/support/test_world.h"
#include "tests/windows/message_boxes.h"
#include "tests/windows/screen_windows.h"
#include "tests/windows/server_dll.h"

namespace velk {

using EntryPoint = decltype(&_Velk_ClsOpnImp::ImportCustomerOpening);
inline constexpr EntryPoint customers = &_Velk_ClsOpnImp::ImportCustomerOpening;
inline constexpr EntryPoint vendors = &_Velk_ClsOpnImp::ImportVendorOpening;
inline constexpr EntryPoint masters = &_Velk_ClsOpnImp::ImportBankBranchOpening;

/// Writes a file of two records, which the next file dialog chooses.
inline void writeOpening(MessageBoxes& boxes) {
  const auto file = std::filesystem::temp_directory_path() / "opening.csv";
  std::ofstream(file, std::ios::binary)
      << "Customer ID,Vendor ID,Bill Amount,Balance\r\nP1,P1,9,4\r\nP2,P2,-5,2";
  boxes.chooseFile(file.string());
}

/// Opens such a file on a screen, views and imports it.
inline void importFile(HWND screen, MessageBoxes& boxes) {
  writeOpening(boxes);
  for (const char* button : {"&Browse", "&View", "&Import"}) Window(screen).click(button);
}

inline std::filesystem::path logFile() {
  return programFolder() / "Error.log";
}

/// The lines of the error log.
inline Texts log() {
  std::ifstream file(logFile());
  Texts lines;
  for (std::string line; std::getline(file, line);)
    lines.push_back(line.substr(0, line.find("\r")));
  return lines;
}

/// A host in this thread, as it should be; at its end everything has been given back.
struct Host {
  Host() { std::filesystem::remove(logFile()); }
  ~Host() {
    closeScreens();
    object.Reset();
    CHECK(references(connection.Get()) == 1);
    if (isOnly) CHECK(dll.call("DllCanUnloadNow") == S_OK);
  }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// The screen that opens; null when none does.
  HWND open(EntryPoint entry, _Connection* given, IPictureDisp* icon = nullptr) const {
    CHECK((object.Get()->*entry)(&given, &icon) == S_OK);
    pump();
    const auto screens = openScreens();
    return screens.empty() ? nullptr : screens.front();
  }
  HWND open(EntryPoint entry) const { return open(entry, connection.Get()); }
  void import(HWND screen) { importFile(screen, boxes); }

  ServerDll dll;
  const bool isOnly = dll.call("DllCanUnloadNow") == S_OK;
  TestWorld world;
  FakeConnection& database = *world.database;
  ComPtr<_Connection> connection = connectionObject(world.database);
  std::optional<ClassRegistration> commands{std::in_place, __uuidof(::Command),
                                            [] { return commandObject(); }};
  MessageBoxes boxes;
  ComPtr<_Velk_ClsOpnImp> object = dll.makeObject();
};

/// Runs in a single-threaded apartment of its own.
inline void inAnotherApartment(const std::function<void()>& body) {
  std::thread([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    body();
    CoUninitialize();
  }).join();
}

}  // namespace velk
