// Peer: a bare ODBC loop on a server. Each statement is prepared once, its parameters are bound
// once, and a record costs three round trips.
//
//   bench_odbc_server CONNECTION-STRING FILE FOLDER

#include <stdexcept>

#include "bench/bare_odbc.h"

using namespace velk::bench;

int main(int argc, char** argv) {
  return runPeer(argc, argv, [](BareConnection& connection, const auto& documents) {
    // A function on PostgreSQL.
    const bool isFunction = connection.engine() == "PostgreSQL";
    DocumentStatements statements(connection.handle(),
                                  std::string(isFunction ? "SELECT * FROM" : "CALL") +
                                      " sp_insert_CustDebitNote(?, ?, ?, ?, ?, ?)",
                                  "CALL sp_acc_import_customeropeningbalance(?, ?)");
    for (const Document& document : documents) {
      statements.set(document);
      statements.exists.execute();
      if (statements.exists.answer() == "0") throw std::runtime_error("a customer is missing");
      statements.note.call();
      statements.account.call();
    }
  });
}
