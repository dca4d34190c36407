// The demonstration host: an application with a message loop that opens the import screens.
#include <windows.h>

#include <shellapi.h>

#include <optional>

#include "apps/host/ado/ado_command_object.h"
#include "apps/host/class_registration.h"
#include "apps/host/host_arguments.h"
#include "apps/host/host_database.h"
#include "apps/host/host_errors.h"
#include "apps/host/host_output.h"
#include "apps/host/host_service_object.h"
#include "apps/host/import_component.h"
#include "apps/host/main_window.h"
#include "platform/windows/ado_connection.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/module_path.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

// The number with which opnimp ends when it cannot open something.
constexpr int exitNotStarted = 4;

std::vector<std::string> commandLine() {
  int count = 0;
  // WinMain gets the command line in the code page only; here every character is kept.
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> result;
  for (int i = 1; i < count; ++i) result.push_back(fromWide(words[i]));
  LocalFree(words);
  return result;
}

std::wstring besideProgram(const wchar_t* name) {
  const std::wstring path = modulePath(nullptr);
  return path.substr(0, path.rfind(L'\\') + 1) + name;
}

/// COM in this thread, with what drag and drop and the clipboard need, for as long as it lives.
struct OleThread {
  OleThread() { check(OleInitialize(nullptr)); }
  ~OleThread() { OleUninitialize(); }
  OleThread(const OleThread&) = delete;
  OleThread& operator=(const OleThread&) = delete;
};

/// What the main window's user works with.
class Company {
 public:
  Company(const CompanyDatabase& database, bool ownAdo)
      : name_(shownName(database)),
        connection_(openHostDatabase(database, ownAdo)),
        reader_(adoConnection(connection_.Get())),
        icon_(iconPicture(hostIcon())) {}

  void open(ImportScreenKind kind) const { openImport(kind, connection_.Get(), icon_.Get()); }

  std::vector<TableRow> rows(std::size_t table) const {
    const auto tables = companyTables();
    return table < tables.size() ? databaseRows(tables[table]) : logLines();
  }

 private:
  std::vector<TableRow> databaseRows(const CompanyTable& table) const {
    try {
      return tableRows(*reader_, table);
    } catch (const RuntimeError& error) {
      throw explained(
          error, '"' + std::string(table.name) + "\" cannot be read from the database: " + name_,
          "See that it is a database of this system and that no other program keeps it locked; "
          "then press F5.");
    }
  }

  static std::vector<TableRow> logLines() {
    const std::wstring path = besideProgram(L"Error.log");
    try {
      return errorLogLines(path);
    } catch (const RuntimeError& error) {
      throw explained(error, "The error log cannot be read: " + fromWide(path),
                      "Close the program that keeps it open; then press F5.");
    }
  }

  std::string name_;
  ComPtr<_Connection> connection_;
  std::shared_ptr<Connection> reader_;
  ComPtr<IPictureDisp> icon_;
};

int runHost(const HostArguments& arguments) {
  // First, because all that follows uses COM until it is gone.
  const OleThread thread;
  const CompanyDatabase database = chooseHostDatabase(arguments.database);
  const bool ownAdo = arguments.ownAdo || needsOwnAdo(database);
  // The component makes its commands by their class, so this program has to serve that class too.
  std::optional<ClassRegistration> commands;
  if (ownAdo) commands.emplace(__uuidof(::Command), [] { return commandObject(); });

  // Before the window: if the database cannot be opened, no window appears.
  const Company company(database, ownAdo);
  MainWindow window({[&](ImportScreenKind kind) { company.open(kind); },
                     [&](std::size_t table) { return company.rows(table); }});
  // After the window, which it uses, so that it is revoked before the window is gone.
  const ClassRegistration service(__uuidof(VelkHostService),
                                  [&] { return hostServiceObject(window); });
  return window.run();
}

int runProgram() {
  try {
    const HostArguments arguments = readHostArguments(commandLine());
    if (arguments.help.empty()) return runHost(arguments);
    say(arguments.help);
    return 0;
  } catch (...) {
    showError(nullptr, currentError().description());
    return exitNotStarted;
  }
}

}  // namespace

}  // namespace velk

int WINAPI WinMain(HINSTANCE, HINSTANCE, char*, int) {
  return velk::runProgram();
}
