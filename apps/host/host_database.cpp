#include "apps/host/host_database.h"

#include "apps/host/ado/ado_connection_object.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

bool isWine() {
  // Wine adds this function; Windows itself has none of that name.
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace

CompanyDatabase chooseHostDatabase(const std::optional<std::string>& option) {
  CompanyDatabase database = companyDatabase(option);
  if (!isMissing(database)) return database;
  if (option) throw RuntimeError(ErrorNumber::FileNotFound, "There is no database " + *option);
  // The answer does not matter: a database that another program made meanwhile will do as well.
  makeSampleCompany(database.path);
  return database;
}

bool needsOwnAdo(const CompanyDatabase& database) {
  return !database.path.empty() || isWine();
}

ComPtr<_Connection> openHostDatabase(const CompanyDatabase& database, bool ownAdo) {
  if (ownAdo) return connectionObject(openOdbc(database.connectionString));
  auto connection = createObject<_Connection>(__uuidof(::Connection));
  call(connection, &_Connection::Open, Bstr(database.connectionString).get(), nullptr, nullptr,
       LONG{adConnectUnspecified});
  return connection;
}

}  // namespace velk
