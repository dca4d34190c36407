#include "platform/odbc/dialect.h"

#include "base/text.h"
#include "platform/odbc/sqlite_dialect.h"

namespace velk {
namespace {

// SQL Server, and whatever understands its statements.
class PlainDialect final : public Dialect {
 public:
  std::string connectionSettings(const OdbcOptions&) const override { return {}; }
  std::vector<std::string> openingStatements() const override { return {}; }
  void translateQuery(std::string_view text, Translation& to) const override {
    to.sql.assign(text);
    to.literalCount = 0;
    to.reusable = false;
  }
  std::string translateCommand(std::string_view text) const override { return std::string(text); }
  std::string keptPrepared(std::string_view native) const override { return std::string(native); }
  Diagnostic normalized(Diagnostic diagnostic) const override { return diagnostic; }
  bool hasProcedureTable() const override { return false; }
  bool hasSingleResults() const override { return false; }
  bool hasDynamicTypes() const override { return false; }
  bool endsTextAtNul() const override { return false; }
};

}  // namespace

std::unique_ptr<Dialect> makeDialect(std::string_view engineName) {
  if (equalsIgnoringCase(engineName, "SQLite")) return std::make_unique<SqliteDialect>();
  return std::make_unique<PlainDialect>();
}

}  // namespace velk
