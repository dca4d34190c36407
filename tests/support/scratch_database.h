// An embedded database of a test's own, gone with the object.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/odbc/odbc_connection.h"
#include "tests/support/temporary_folder.h"

namespace velk {

class ScratchDatabase {
 public:
  /// An empty database.
  ScratchDatabase() { folder_.write("scratch.db", ""); }

  std::string path(std::string_view name = "scratch.db") const { return folder_.path(name); }

  std::shared_ptr<OwnConnection> open(const OdbcOptions& options = {}) const {
    return openOdbc(embeddedConnectionString(path()), options);
  }

 private:
  TemporaryFolder folder_;
};

/// First field of the first row as text; "(none)" without a row.
inline std::string firstField(const std::shared_ptr<Recordset>& reply) {
  return reply->State() == stateClosed || reply->isEOF() ? "(none)" : toText(reply->field(0));
}

inline std::string ask(Connection& connection, std::string_view query) {
  return firstField(connection.Execute(query));
}

}  // namespace velk
