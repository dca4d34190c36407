// The demonstration host: an application with a message loop that opens the import screens.
#include <windows.h>

#include <shellapi.h>

#include <optional>

#include "apps/host/ado/ado_command_object.h"
#include "apps/host/class_registration.h"
#include "apps/host/host_arguments.h"
#include "apps/host/host_database.h"
#include "apps/host/host_service_object.h"
#include "apps/host/import_component.h"
#include "apps/host/main_window.h"
#include "platform/windows/ado_connection.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/module_path.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr int exitFailure = 4;
constexpr CLSID serviceClass = {
    0x2F54E293, 0x7499, 0x4B89, {0x9A, 0x2E, 0xE7, 0x83, 0x42, 0x00, 0x7F, 0x59}};

std::vector<std::string> commandLine() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> result;
  for (int i = 1; i < count; ++i) result.push_back(fromWide(words[i]));
  LocalFree(words);
  return result;
}

/// To the terminal that the program was started from, or in a box when there is none.
void say(std::string_view text, UINT icon) {
  AttachConsole(ATTACH_PARENT_PROCESS);
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD written = 0;
  const std::string line = std::string(text) + "\n";
  if (output != nullptr &&
      WriteFile(output, line.data(), static_cast<DWORD>(line.size()), &written, nullptr) != FALSE) {
    return;
  }
  MessageBoxW(nullptr, toWide(text).c_str(), hostTitle, icon);
}

std::wstring programFolder() {
  const std::wstring path = modulePath(nullptr);
  return path.substr(0, path.rfind(L'\\'));
}

struct Apartment {
  Apartment() { check(OleInitialize(nullptr)); }
  ~Apartment() { OleUninitialize(); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

int runHost(const HostArguments& arguments) {
  const Apartment apartment;
  const HostDatabase database = chooseHostDatabase(arguments.database);
  const bool ownAdo = arguments.ownAdo || needsOwnAdo(database);
  const auto connection = openHostDatabase(database, ownAdo);
  std::optional<ClassRegistration> commands;
  if (ownAdo) commands.emplace(__uuidof(::Command), [] { return commandObject(); });

  const auto reader = adoConnection(connection.get());
  const auto icon = iconPicture(LoadIconW(nullptr, IDI_APPLICATION));
  MainWindow* shown = nullptr;
  MainWindow window({
      [&](ImportKind kind) {
        try {
          openImport(kind, connection.get(), icon.get());
        } catch (const RuntimeError& error) {
          MessageBoxW(shown->handle(), toWide(error.description()).c_str(), hostTitle,
                      MB_ICONERROR);
        }
      },
      [&](std::size_t table) {
        const auto tables = companyTables();
        return table < tables.size() ? tableRows(*reader, tables[table])
                                     : errorLogLines(programFolder() + L"\\Error.log");
      },
  });
  shown = &window;
  const ClassRegistration service(serviceClass, [&] { return hostServiceObject(window); });
  return window.run();
}

int runProgram() {
  try {
    const HostArguments arguments = readHostArguments(commandLine());
    if (!arguments.help) return runHost(arguments);
    say(hostHelp, MB_ICONINFORMATION);
    return 0;
  } catch (const RuntimeError& error) {
    say(error.description(), MB_ICONERROR);
    return exitFailure;
  }
}

}  // namespace

}  // namespace velk

int WINAPI WinMain(HINSTANCE, HINSTANCE, char*, int) {
  return velk::runProgram();
}
