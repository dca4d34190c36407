// Stored procedures for an engine without them: statements in a table of the database.
//
//   StoredProcedure(name, step, statement, arguments)
//
// A row is one step. `statement` is in the engine's own SQL, with "?" marks, and `arguments`
// lists for each mark the number (from 1) of the parameter it takes, separated by
// commas. The steps run in ascending order. Each step that returns rows gives a result of the call.
// A step is one statement of those that procedure_step.h allows: a database that comes from
// elsewhere is not to reach beyond its own file. The steps of a call take effect together or not at
// all. Names compare without regard to letter case.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/odbc/prepared_statement.h"

namespace velk {

class StoredProcedures {
 public:
  explicit StoredProcedures(OdbcSession& session) : session_(session) {}

  /// Runs a procedure. The table is read once, with the first call. Errors: -2147217900 for a name
  /// that is not there, a wrong number of parameters, a definition that makes no sense; else what
  /// the steps raise.
  std::shared_ptr<MemoryRecordset> call(std::string_view name,
                                        const std::vector<CommandParameter>& parameters);
  /// Whether there is a procedure of that name with as many parameters. Errors: those of the table.
  bool takes(std::string_view name, std::size_t parameters);

 private:
  struct Step {
    std::string sql;
    std::vector<std::size_t> arguments;  // zero-based
    std::unique_ptr<PreparedStatement> statement;
  };
  struct Procedure {
    std::vector<Step> steps;
    std::size_t parameterCount = 0;
  };

  void load();
  void addStep(const Recordset& row);
  Procedure* found(std::string_view name);
  Procedure& find(std::string_view name);
  std::shared_ptr<MemoryRecordset> runStep(Step& step,
                                           const std::vector<CommandParameter>& parameters);
  std::shared_ptr<MemoryRecordset> runSteps(Procedure& procedure,
                                            const std::vector<CommandParameter>& parameters);
  void undo();

  OdbcSession& session_;
  std::map<std::string, Procedure> procedures_;  // by name in lower case
  bool loaded_ = false;
  bool keepsParts_ = false;  // a statement that fails may keep a part of its changes
};

}  // namespace velk
