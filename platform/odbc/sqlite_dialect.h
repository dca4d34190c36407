// The embedded database's dialect: the system's SQL Server statements as SQLite understands them.
//
// Rewritten: "TOP n" (a LIMIT at the end of that select), N'...', isnull(a, b), GETDATE() (the
// local time as "YYYY-MM-DD HH:MM:SS"), [name]. Nothing inside quotation marks is touched; comments
// go, because the driver looks for quotation marks inside them.
#pragma once

#include <vector>

#include "platform/odbc/dialect.h"
#include "platform/odbc/sql_tokenizer.h"

namespace velk {

class SqliteDialect final : public Dialect {
 public:
  std::string connectionSettings(const OdbcOptions& options) const override;
  std::vector<std::string> openingStatements() const override;

  /// Literals that a SELECT compares with become parameters, so that a query that differs from row
  /// to row by a code only is prepared once. Errors -2147217900: an open quotation mark or comment,
  /// a second statement, a parameter mark, an undeclared variable, a NUL character, TOP with
  /// PERCENT or WITH TIES.
  void translateQuery(std::string_view text, Translation& to) const override;
  /// As translateQuery, but parameter marks are allowed and literals stay.
  std::string translateCommand(std::string_view text) const override;

  /// The driver compiles a statement anew for each execution, unless it begins as a query may: what
  /// writes gets a WITH clause that nothing uses. It runs twice as fast, and nothing differs but
  /// the row count, which nobody asks for.
  std::string keptPrepared(std::string_view native) const override;

  /// Its driver gives HY000 for everything and the engine's result code as native code.
  Diagnostic normalized(Diagnostic diagnostic) const override;

  bool hasProcedureTable() const override { return true; }
  bool hasSingleResults() const override { return true; }
  bool hasDynamicTypes() const override { return true; }
  bool endsTextAtNul() const override { return true; }

 private:
  mutable std::vector<SqlToken> tokens_;  // reused from statement to statement
};

}  // namespace velk
