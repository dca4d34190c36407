// What differs from engine to engine. SQL Server and engines that understand the system's
// statements as they are need the plain dialect; the embedded database has its own.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/odbc/odbc_options.h"

namespace velk {

/// A statement ready for the engine. `sql` has one parameter mark for each literal, in order.
///
/// Kept by the caller and handed in again, so that a statement which differs from the one before by
/// its literals only, as the queries of an import do from row to row, needs no second reading.
struct Translation {
  std::string sql;
  std::vector<std::string> literals;  ///< storage; only the first literalCount are meant
  std::size_t literalCount = 0;
  /// The same text will come again: worth keeping prepared.
  bool reusable = false;
  /// The statement around its literals, quotation marks included: one more than there are literals.
  std::vector<std::string> around;
};

class Dialect {
 public:
  virtual ~Dialect() = default;

  /// What a connection string has to say besides, as "Name=value"; empty for nothing.
  virtual std::string connectionSettings(const OdbcOptions& options) const = 0;
  /// Statements to run on each new connection.
  virtual std::vector<std::string> openingStatements() const = 0;

  /// A statement without parameters of its own. Errors: -2147217900 for a text that no engine would
  /// take as one statement.
  virtual void translateQuery(std::string_view text, Translation& to) const = 0;
  /// A statement whose parameter marks the caller binds.
  virtual std::string translateCommand(std::string_view text) const = 0;

  /// A statement of the engine's own as the driver keeps it compiled between executions.
  virtual std::string keptPrepared(std::string_view native) const = 0;

  /// The record with its state as other engines would say it.
  virtual Diagnostic normalized(Diagnostic diagnostic) const = 0;

  /// Procedures are statements in a table of the database (stored_procedures.h).
  virtual bool hasProcedureTable() const = 0;
  /// One statement gives one result at most.
  virtual bool hasSingleResults() const = 0;
  /// A cell may hold another kind of value than its column declares.
  virtual bool hasDynamicTypes() const = 0;
  /// A text ends at its first NUL character, so that one with a NUL cannot be passed.
  virtual bool endsTextAtNul() const = 0;
};

/// The dialect for what a driver calls its engine.
std::unique_ptr<Dialect> makeDialect(std::string_view engineName);

}  // namespace velk
