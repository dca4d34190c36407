// Peer: a bare ODBC loop. Each statement is prepared once, its parameters are bound once, and a row
// costs three executions and one fetch.
//
//   bench_odbc_prepared COMPANY FILE FOLDER [kept]
//
// The embedded database's driver compiles a prepared statement anew for each execution, unless it
// begins as a query may. With "kept" the statements that write begin so: the best that a loop over
// this driver can do.

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "bench/bare_odbc.h"

using namespace velk::bench;

namespace {

class Loop {
 public:
  Loop(BareConnection& connection, const std::string& beginning)
      : statements_(connection.handle(),
                    beginning + connection.procedure("sp_insert_CustDebitNote"),
                    beginning + connection.procedure("sp_acc_import_customeropeningbalance")) {
    SQLBindCol(statements_.exists.handle(), 1, SQL_C_SLONG, &count_, 0, nullptr);
  }

  void post(const Document& document) {
    statements_.set(document);
    if (!customerExists()) throw std::runtime_error("a customer is missing");
    statements_.note.execute();
    statements_.account.execute();
  }

 private:
  bool customerExists() {
    const BareStatement& exists = statements_.exists;
    exists.execute();
    exists.check(SQLFetch(exists.handle()));
    exists.check(SQLFreeStmt(exists.handle(), SQL_CLOSE));
    return count_ > 0;
  }

  DocumentStatements statements_;
  SQLINTEGER count_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const bool kept = argc == 5 && argv[4] == std::string_view("kept");
  const std::string beginning = kept ? "WITH kept AS (SELECT 1) " : "";
  return runPeer(kept ? 4 : argc, argv, [&](BareConnection& connection, const auto& documents) {
    Loop loop(connection, beginning);
    for (const Document& document : documents) loop.post(document);
  });
}
