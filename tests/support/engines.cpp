#include "tests/support/engines.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <regex>
#include <sstream>

#include "samples/company/sample_company.h"
#include "tests/support/scratch_database.h"

namespace velk {
namespace {

std::string fileText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// Empty if the engine is not there.
std::string connectionStringOf(const TestEngine& engine) {
  if (std::string_view(engine.name) == "sqlserver") return environment("OPNIMP_TEST_SQLSERVER");
  const std::string servers = environment("OPNIMP_TEST_SERVERS");
  std::string line;
  std::ifstream file(servers + "/" + engine.name + ".odbc");
  std::getline(file, line);
  return line;
}

std::vector<TestEngine> present() {
  std::vector<TestEngine> engines{{"embedded", "nvarchar", "datetime", ";", true}};
  for (TestEngine engine : {TestEngine{"postgresql", "varchar", "timestamp", "", true},
                            {"mariadb", "varchar", "datetime(3)", ";", false},
                            {"sqlserver", "nvarchar", "datetime", "GO", false}}) {
    engine.connectionString = connectionStringOf(engine);
    if (engine.isEmbedded()) {
      std::cerr << "NOT TESTED ON " << engine.name << ": there is no such server\n";
    } else {
      engines.push_back(std::move(engine));
    }
  }
  return engines;
}

/// Runs a script as the engine's own shell does: each statement ends with the delimiter, at the end
/// of a line; without one the whole is sent at once.
void runScript(OwnConnection& connection, const std::string& path, std::string delimiter) {
  std::istringstream lines(fileText(std::string(OPNIMP_SOURCE_DIR "/samples/company/") + path));
  std::string statement;
  const auto send = [&] {
    if (statement.find_first_not_of("\n") != std::string::npos) connection.Execute(statement);
    statement.clear();
  };
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("DELIMITER ")) {
      delimiter = line.substr(10);
    } else if (line.starts_with("--")) {
      continue;
    } else if (!delimiter.empty() && line.ends_with(delimiter)) {
      statement += line.substr(0, line.size() - delimiter.size());
      send();
    } else {
      statement += line + "\n";
    }
  }
  send();
}

/// In the connection string's own database, which is there for this: nothing else can be dropped
/// without the right to make databases.
void dropCompany(OwnConnection& connection) {
  for (const auto& [kind, file] : {std::pair("PROCEDURE", "2_procedures"), {"TABLE", "1_tables"}}) {
    const std::string script =
        fileText(std::string(OPNIMP_SOURCE_DIR "/samples/company/sqlserver/") + file + ".sql");
    const std::regex creation(std::string("CREATE ") + kind + " (\\w+)");
    std::vector<std::string> names;
    for (std::sregex_iterator found(script.begin(), script.end(), creation), end; found != end;
         ++found) {
      names.push_back((*found)[1]);
    }
    // What refers to a table goes before it.
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
      connection.Execute("IF OBJECT_ID('" + *name + "') IS NOT NULL DROP " + kind + " " + *name);
    }
  }
}

}  // namespace

std::string with(std::string connectionString, std::initializer_list<std::string> settings) {
  for (const std::string& setting : settings) {
    const std::string name = setting.substr(0, setting.find('=') + 1);
    connectionString = std::regex_replace(connectionString, std::regex(name + "[^;]*"), setting);
  }
  return connectionString;
}

const std::vector<TestEngine>& testEngines() {
  static const std::vector<TestEngine> engines = present();
  return engines;
}

EngineCompany::EngineCompany(const TestEngine& engine, const std::string& folder) {
  if (engine.isEmbedded()) {
    database_ = folder + "company.db";
    createSampleCompany(database_);
    owner_ = embeddedConnectionString(database_);
    reconnect();
    return;
  }
  const std::string name = engine.name;
  owner_ = engine.connectionString;
  database_ = owner_;
  if (name == "sqlserver") {
    dropCompany(*openOdbc(owner_));
  } else {
    const auto administrator = openOdbc(owner_);
    administrator->Execute("DROP DATABASE IF EXISTS company");
    administrator->Execute("CREATE DATABASE company");
    owner_ = with(owner_, {"Database=company"});
    database_ = with(owner_, {"UID=opnimp_import", "PWD=change-me"});
  }
  reconnect();
  runScript(*connection_, name + "/1_tables.sql", engine.delimiter);
  runScript(*connection_, "data.sql", engine.delimiter);
  runScript(*connection_, name + "/2_procedures.sql", engine.delimiter);
  if (name != "sqlserver") runScript(*connection_, name + "/3_account.sql", engine.delimiter);
}

std::string EngineCompany::ask(std::string_view query) const {
  return velk::ask(*connection_, query);
}

}  // namespace velk
