#include "platform/odbc/odbc_session.h"

#include <array>
#include <limits>

#include "base/text.h"
#include "platform/odbc/cannot_connect.h"
#include "platform/odbc/connection_string.h"

namespace velk {
namespace {

EnvironmentHandle makeEnvironment() {
  auto environment = allocateHandle<SQL_HANDLE_ENV>(nullptr);
  // Without a version the driver manager allocates no connection.
  SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION, integerArgument(SQL_OV_ODBC3), 0);
  return environment;
}

SQLPOINTER secondsArgument(int seconds) {
  // 0 means no limit to ODBC.
  return integerArgument(static_cast<std::uintptr_t>(seconds < 0 ? 0 : seconds));
}

}  // namespace

OdbcSession::OdbcSession(std::string_view connectionString, const OdbcOptions& options)
    : environment_(makeEnvironment()), options_(options) {
  trapErrors([&] { open(connectionString); },
             [this](const RuntimeError& error) { throw CannotConnect(error, diagnostics_); });
}

void OdbcSession::open(std::string_view connectionString) {
  if (const Dialect* const embedded = embeddedDialectIn(connectionString)) {
    dialect_ = embedded;
    connect(withSettings(connectionString));
  } else {
    connect(std::string(connectionString));
    // Without a name the engine is taken for SQL Server.
    dialect_ = &dialectOf(information(SQL_DBMS_NAME));
    if (dialect_->connectionSettings != nullptr) connect(withSettings(connectionString));
  }
  for (const std::string_view statement : dialect_->openingStatements) executeNative(statement);
  const std::string limit = dialect_->timeLimit == nullptr ? "" : dialect_->timeLimit(options_);
  if (!limit.empty()) executeNative(limit);
  if (options_.readOnly && !dialect_->readOnly.empty()) executeNative(dialect_->readOnly);
}

// Drivers read it only when connecting, and mostly only a connected one can name its engine: such a
// connection is made twice.
std::string OdbcSession::withSettings(std::string_view connectionString) const {
  std::string text(connectionString);
  for (const std::string& setting : dialect_->connectionSettings(options_)) {
    const bool isSet = hasKeyword(connectionString, setting.substr(0, setting.find('=')));
    if (!isSet) text.append(";").append(setting).append(";");
  }
  return text;
}

void OdbcSession::connect(const std::string& connectionString) {
  connection_ = allocateHandle<SQL_HANDLE_DBC>(environment_.get());
  // The result does not count: drivers without such a limit refuse it and connect all the same.
  SQLSetConnectAttrW(handle(), SQL_ATTR_LOGIN_TIMEOUT,
                     secondsArgument(options_.loginTimeoutSeconds), SQL_IS_UINTEGER);
  const std::u16string wide = toUtf16(connectionString);
  if (wide.size() > std::numeric_limits<SQLSMALLINT>::max()) {
    throw RuntimeError(ErrorNumber::InvalidProcedureCall, "The connection string is too long");
  }
  // Without a prompt: the driver's dialog would wait for somebody who may not be there.
  check(SQLDriverConnectW(handle(), nullptr, wideText(wide.data()),
                          static_cast<SQLSMALLINT>(wide.size()), nullptr, 0, nullptr,
                          SQL_DRIVER_NOPROMPT));
}

StatementHandle OdbcSession::newStatement() const {
  auto statement = allocateHandle<SQL_HANDLE_STMT>(handle());
  // The result does not count here either.
  SQLSetStmtAttrW(statement.get(), SQL_ATTR_QUERY_TIMEOUT,
                  secondsArgument(options_.commandTimeoutSeconds), SQL_IS_UINTEGER);
  return statement;
}

void OdbcSession::executeNative(std::string_view sql) {
  const StatementHandle statement = newStatement();
  const std::u16string wide = toUtf16(sql);
  const SQLRETURN result =
      SQLExecDirectW(statement.get(), wideText(wide.data()), static_cast<SQLINTEGER>(wide.size()));
  // "No data" is a success: no row was changed.
  if (result != SQL_NO_DATA) checkStatement(result, statement.get());
}

RuntimeError OdbcSession::failure(SQLSMALLINT handleType, SQLHANDLE handle) {
  diagnostics_.clear();
  reportedState_.clear();
  add(handleType, handle);
  return toRuntimeError(diagnostics_);
}

void OdbcSession::add(SQLSMALLINT handleType, SQLHANDLE handle) {
  for (Diagnostic& diagnostic : readDiagnostics(handleType, handle)) {
    if (diagnostics_.empty()) reportedState_ = diagnostic.state;
    diagnostics_.push_back(normalized(*dialect_, std::move(diagnostic)));
  }
  // A later failure on a lost connection may name another cause.
  lost_ = lost_ || tellsConnectionLost(diagnostics_) || isDead();
}

// Asked at each failure, because drivers give a lost connection any state.
bool OdbcSession::isDead() const {
  SQLULEN dead = SQL_CD_FALSE;  // drivers write 32 bits or 64
  const SQLRETURN result =
      SQLGetConnectAttrW(handle(), SQL_ATTR_CONNECTION_DEAD, &dead, SQL_IS_UINTEGER, nullptr);
  return SQL_SUCCEEDED(result) && static_cast<SQLUINTEGER>(dead) == SQL_CD_TRUE;
}

void OdbcSession::setRunning(SQLHANDLE statement) {
  const std::lock_guard lock(runningMutex_);
  running_ = statement;
}

void OdbcSession::cancel() {
  const std::lock_guard lock(runningMutex_);
  wasCancelled_ = true;
  if (running_ != nullptr) SQLCancel(running_);
}

std::string OdbcSession::information(SQLUSMALLINT type) const {
  std::array<char16_t, 256> name{};
  SQLSMALLINT bytes = 0;
  const SQLRETURN result =
      SQLGetInfoW(handle(), type, name.data(), static_cast<SQLSMALLINT>(sizeof name), &bytes);
  return SQL_SUCCEEDED(result) ? toUtf8(name.data()) : std::string();
}

}  // namespace velk
