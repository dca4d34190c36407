#include "platform/odbc/prepared_statement.h"

#include "base/errors.h"
#include "base/text.h"
#include "platform/odbc/result_reader.h"

namespace velk {

PreparedStatement::PreparedStatement(OdbcSession& session, std::string_view sql)
    : session_(session), statement_(session.newStatement()) {
  if (sql.empty()) throw RuntimeError(ErrorNumber::CommandErrors, "The statement is empty.");
  const std::u16string wide = toUtf16(sql);
  session_.check(
      SQLPrepareW(statement_.get(), wideText(wide.data()), static_cast<SQLINTEGER>(wide.size())),
      SQL_HANDLE_STMT, statement_.get());
}

ParameterBuffer& PreparedStatement::parameter(std::size_t position, std::int32_t type) {
  if (position < parameters_.size()) {
    if (parameters_[position].type() == type) return parameters_[position];
    unbindFrom(position);
  }
  ParameterBuffer& buffer = parameters_.emplace_back(type);
  const auto number = static_cast<SQLUSMALLINT>(parameters_.size());
  const SQLRETURN bound = buffer.bind(statement_.get(), number);
  if (SQL_SUCCEEDED(bound)) return buffer;
  parameters_.pop_back();
  throw session_.failure(SQL_HANDLE_STMT, statement_.get());
}

void PreparedStatement::setParameter(std::size_t position, std::int32_t type, const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (text != nullptr && session_.dialect().endsTextAtNul() &&
      text->find('\0') != std::string::npos) {
    throw RuntimeError(ErrorNumber::WrongArgumentType);
  }
  parameter(position, type).set(value);
}

// The driver forgets all bindings at once; those before the position are made again.
void PreparedStatement::unbindFrom(std::size_t position) {
  SQLFreeStmt(statement_.get(), SQL_RESET_PARAMS);
  while (parameters_.size() > position) parameters_.pop_back();
  for (std::size_t i = 0; i < position; ++i) {
    session_.check(parameters_[i].bind(statement_.get(), static_cast<SQLUSMALLINT>(i + 1)),
                   SQL_HANDLE_STMT, statement_.get());
  }
}

std::shared_ptr<MemoryRecordset> PreparedStatement::execute(std::size_t parameterCount) {
  if (parameters_.size() > parameterCount) unbindFrom(parameterCount);
  const SQLRETURN executed = SQLExecute(statement_.get());
  if (nothing_ && (SQL_SUCCEEDED(executed) || executed == SQL_NO_DATA)) return nothing_;
  auto result = readResults(session_, statement_.get(), executed, kinds_);
  if (session_.dialect().hasSingleResults() && result->State() == stateClosed) nothing_ = result;
  return result;
}

}  // namespace velk
