// The engines that a suite runs on, as data: the embedded one always, the servers that
// scripts/test-servers started where OPNIMP_TEST_SERVERS names their folder, and the one that
// OPNIMP_TEST_SQLSERVER names by a connection string. What is left out is said once, aloud.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/odbc/odbc_connection.h"

namespace velk {

struct TestEngine {
  const char* name;
  const char* textType;  ///< of a column for text beyond ASCII
  const char* dateType;
  const char* delimiter;  ///< what ends a statement of its scripts, at the end of a line
  bool refusesAsAWhole;   ///< a procedure that is refused has changed nothing, and it is known
  std::string connectionString{};  ///< of its administrator; empty for the embedded one

  bool isEmbedded() const { return connectionString.empty(); }
};

const std::vector<TestEngine>& testEngines();

/// With other values for some of its settings.
std::string with(std::string connectionString, std::initializer_list<std::string> settings);

/// The sample company in an engine, made anew; what imports into it in a test.
class EngineCompany {
 public:
  /// In a file of the folder if the engine is the embedded one.
  EngineCompany(const TestEngine& engine, const std::string& folder);

  /// For --database: an embedded file, or the connection string of an account that may only import.
  const std::string& database() const { return database_; }
  /// The administrator's.
  const std::shared_ptr<OwnConnection>& connection() const { return connection_; }
  /// Opens it anew: the server was ended.
  void reconnect() { connection_ = openOdbc(owner_); }
  std::string ask(std::string_view query) const;

 private:
  std::string owner_;
  std::string database_;
  std::shared_ptr<OwnConnection> connection_;
};

}  // namespace velk
