#include "apps/host/host_database.h"

#include <filesystem>

#include "apps/host/ado/ado_connection_object.h"
#include "base/text.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"
#include "samples/company/sample_company.h"

namespace velk {

namespace {

bool exists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(toUtf16(path), error);
}

HostDatabase embedded(const std::string& path) {
  return {embeddedConnectionString(path), true};
}

bool isWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace

HostDatabase chooseHostDatabase(const std::optional<std::string>& option) {
  const std::string text = option.value_or("opnimp.db");
  if (exists(text)) return embedded(text);
  if (text.find('=') != std::string::npos) return {text, false};
  if (option) throw RuntimeError(ErrorNumber::FileNotFound, "There is no database " + text);
  return newSampleCompany(text);
}

HostDatabase newSampleCompany(const std::string& path) {
  if (exists(path)) {
    throw RuntimeError(ErrorNumber::FileAlreadyOpen, "There is a database " + path + " already");
  }
  createSampleCompany(path);
  return embedded(path);
}

bool needsOwnAdo(const HostDatabase& database) {
  return database.embedded || isWine();
}

ComPtr<_Connection> openHostDatabase(const HostDatabase& database, bool ownAdo) {
  if (ownAdo) return connectionObject(openOdbc(database.connectionString));
  auto connection = createObject<_Connection>(__uuidof(::Connection));
  call(connection, &_Connection::Open, Bstr(database.connectionString).get(), nullptr, nullptr,
       LONG{adConnectUnspecified});
  return connection;
}

}  // namespace velk
