#include "apps/host/host_database.h"

#include "apps/host/ado/ado_connection_object.h"
#include "apps/host/host_errors.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/module_path.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_files.h"

namespace velk {

namespace {

constexpr std::string_view whatToDo =
    "Name a database of this system behind --database, or leave the option out for a sample "
    "company beside this program.";

RuntimeError notOpened(const CompanyDatabase& database, const RuntimeError& error) {
  return explained(error, "The database cannot be opened: " + shownName(database), whatToDo);
}

/// Beside the program: what lies in the current folder may be somebody else's.
std::string sampleDatabase() {
  const std::wstring program = modulePath(nullptr);
  return fromWide(std::wstring_view(program).substr(0, program.rfind(L'\\') + 1)) + "opnimp.db";
}

bool isWine() {
  // Wine adds this function; Windows itself has none of that name.
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace

CompanyDatabase chooseHostDatabase(const std::optional<std::string>& option) {
  CompanyDatabase database = companyDatabase(option.value_or(sampleDatabase()));
  if (!isMissing(database)) return database;
  if (option) throw notOpened(database, RuntimeError(ErrorNumber::FileNotFound));
  // The answer does not matter: a database that another program made meanwhile will do as well.
  try {
    makeSampleCompany(database.path);
  } catch (const RuntimeError& error) {
    throw notOpened(database, error);
  }
  return database;
}

std::string shownName(const CompanyDatabase& database) {
  return database.path.empty() ? "the one that --database describes" : absolutePath(database.path);
}

bool needsOwnAdo(const CompanyDatabase& database) {
  return !database.path.empty() || isWine();
}

ComPtr<_Connection> openHostDatabase(const CompanyDatabase& database, bool ownAdo) {
  try {
    if (ownAdo) return connectionObject(openOdbc(database.connectionString));
    auto connection = createObject<_Connection>(__uuidof(::Connection));
    call(connection, &_Connection::Open, Bstr(database.connectionString).get(), nullptr, nullptr,
         LONG{adConnectUnspecified});
    return connection;
  } catch (const RuntimeError& error) {
    throw notOpened(database, error);
  }
}

}  // namespace velk
