#include "platform/odbc/prepared_statement.h"

#include <algorithm>

#include "base/errors.h"
#include "base/text.h"
#include "platform/odbc/result_reader.h"

namespace velk {

namespace {

// The statement can be cancelled as long as this lives.
class Running {
 public:
  Running(OdbcSession& session, SQLHANDLE statement) : session_(session) {
    session_.setRunning(statement);
  }
  ~Running() { session_.setRunning(nullptr); }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  OdbcSession& session_;
};

/// Executes, and reads all results.
template <class Execute>
std::shared_ptr<MemoryRecordset> run(OdbcSession& session, SQLHANDLE statement, Execute&& execute) {
  const Running running(session, statement);
  session.setSent(OdbcSession::Sent::Asked);
  const SQLRETURN executed = execute();
  // From here on it has been done, whatever the calls that follow answer.
  const bool done = SQL_SUCCEEDED(executed) || executed == SQL_NO_DATA;
  if (done) session.setSent(OdbcSession::Sent::Done);
  return readResults(session, statement, executed);
}

}  // namespace

PreparedStatement::PreparedStatement(OdbcSession& session, std::string_view sql)
    : session_(session), statement_(session.newStatement()) {
  const std::u16string wide = toUtf16(sql);
  check(SQLPrepareW(statement_.get(), wideText(wide.data()), static_cast<SQLINTEGER>(wide.size())));
}

std::shared_ptr<MemoryRecordset> PreparedStatement::execute(
    const std::vector<CommandParameter>& parameters) {
  bind(parameters);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    requirePassable(parameters[i].value);
    buffers_[i].set(parameters[i].value);
  }
  return run(session_, statement_.get(), [&] { return SQLExecute(statement_.get()); });
}

std::shared_ptr<MemoryRecordset> PreparedStatement::executeOnce(OdbcSession& session,
                                                                std::string_view sql) {
  const StatementHandle statement = session.newStatement();
  const std::u16string wide = toUtf16(sql);
  return run(session, statement.get(), [&] {
    return SQLExecDirectW(statement.get(), wideText(wide.data()),
                          static_cast<SQLINTEGER>(wide.size()));
  });
}

// An import runs a statement with the same types again and again. If parameters were bound each
// time, an import of 10,000 documents would take 6 % longer.
void PreparedStatement::bind(const std::vector<CommandParameter>& parameters) {
  if (std::ranges::equal(buffers_, parameters, &ParameterBuffer::fits)) return;
  // All at once, because drivers cannot forget a single one.
  SQLFreeStmt(statement_.get(), SQL_RESET_PARAMS);
  buffers_.clear();
  for (const CommandParameter& parameter : parameters) {
    ParameterBuffer& buffer = buffers_.emplace_back(parameter);
    check(buffer.bind(statement_.get(), static_cast<SQLUSMALLINT>(buffers_.size())));
  }
}

// A value that the engine would cut must not be posted.
void PreparedStatement::requirePassable(const Value& value) const {
  const auto* text = std::get_if<std::string>(&value);
  if (text != nullptr && session_.dialect().endsTextAtNul &&
      text->find('\0') != std::string::npos) {
    throw RuntimeError(ErrorNumber::WrongArgumentType);
  }
}

}  // namespace velk
