// An embedded database of a test's own, gone with the object.
#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "platform/odbc/odbc_connection.h"

namespace velk {

class ScratchDatabase {
 public:
  /// An empty database.
  ScratchDatabase() : folder_(newFolder()) { std::ofstream{path()}; }
  ~ScratchDatabase() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  ScratchDatabase(const ScratchDatabase&) = delete;
  ScratchDatabase& operator=(const ScratchDatabase&) = delete;

  std::string path(std::string_view name = "scratch.db") const { return (folder_ / name).string(); }
  std::shared_ptr<OdbcConnection> open(const OdbcOptions& options = {}) const {
    return openOdbc(embeddedConnectionString(path()), options);
  }

 private:
  static std::filesystem::path newFolder() {
    const auto base = std::filesystem::temp_directory_path();
    for (int i = 0;; ++i) {
      const auto folder = base / ("opnimp_database_" + std::to_string(i));
      if (std::filesystem::create_directory(folder)) return folder;
    }
  }

  std::filesystem::path folder_;
};

/// First field of the first row as text; "(none)" without a row.
inline std::string firstField(const std::shared_ptr<Recordset>& reply) {
  return reply->State() == stateClosed || reply->isEOF() ? "(none)" : toText(reply->field(0));
}

inline std::string ask(Connection& connection, std::string_view query) {
  return firstField(connection.Execute(query));
}

}  // namespace velk
