// A statement that the driver has prepared, with its parameters bound.
#pragma once

#include <deque>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/memory_recordset.h"
#include "platform/odbc/odbc_session.h"
#include "platform/odbc/parameter_buffer.h"

namespace velk {

class PreparedStatement {
 public:
  /// Errors: what the driver reports about the text; some drivers report it only on execution.
  PreparedStatement(OdbcSession& session, std::string_view sql);

  /// Runs a text without parameters that is run once: nothing is prepared, which would be a further
  /// question to a server. Errors: what the driver reports.
  static std::shared_ptr<MemoryRecordset> executeOnce(OdbcSession& session, std::string_view sql);

  /// Runs with one parameter for each mark and reads all results. Any number of times. Error 3421
  /// for a type or a value that cannot be bound; else what the driver reports.
  std::shared_ptr<MemoryRecordset> execute(const std::vector<CommandParameter>& parameters);

 private:
  void check(SQLRETURN result) { session_.checkStatement(result, statement_.get()); }
  void bind(const std::vector<CommandParameter>& parameters);
  void requirePassable(const Value& value) const;

  OdbcSession& session_;
  std::deque<ParameterBuffer> buffers_;  // bound by address, so it has to outlive the handle
  StatementHandle statement_;
};

}  // namespace velk
