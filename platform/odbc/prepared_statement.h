// A statement that the driver has prepared, with its parameters bound once and for all.
#pragma once

#include <deque>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/memory_recordset.h"
#include "platform/odbc/cell_reader.h"
#include "platform/odbc/odbc_session.h"
#include "platform/odbc/parameter_buffer.h"

namespace velk {

/// Usage, any number of times: set every parameter through parameter(), then execute().
class PreparedStatement {
 public:
  /// Errors: what the driver says about the text; some drivers say it only on execution.
  PreparedStatement(OdbcSession& session, std::string_view sql);

  /// The buffer of the mark at a zero-based position, bound as `type`. The first call for a
  /// position comes after those for all lower positions. Error 3421 for an unknown type.
  ParameterBuffer& parameter(std::size_t position, std::int32_t type);
  /// Error 3421 for a value that the type or the engine cannot take.
  void setParameter(std::size_t position, std::int32_t type, const Value& value);

  /// Runs with the first `parameterCount` parameters and reads all results.
  std::shared_ptr<MemoryRecordset> execute(std::size_t parameterCount);

 private:
  void unbindFrom(std::size_t position);

  OdbcSession& session_;
  std::deque<ParameterBuffer> parameters_;  // bound addresses; freed after the handle
  StatementHandle statement_;
  std::vector<CellKind> kinds_;               // of the columns of the result being read
  std::shared_ptr<MemoryRecordset> nothing_;  // the result, once known to be always without rows
};

}  // namespace velk
