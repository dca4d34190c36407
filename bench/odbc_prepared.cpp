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
      : exists_(connection.handle()), note_(connection.handle()), account_(connection.handle()) {
    exists_.prepare("select count(*) from Customer where CustomerID=?");
    bindText(exists_, 1, customer_);
    note_.prepare(beginning + connection.procedure("sp_insert_CustDebitNote"));
    bindText(note_, 1, customer_);
    bindText(note_, 2, reference_);
    bindDate(note_, 3, date_);
    bindDouble(note_, 4, amount_);
    bindDouble(note_, 5, balance_);
    bindText(note_, 6, narration_);
    account_.prepare(beginning + connection.procedure("sp_acc_import_customeropeningbalance"));
    bindText(account_, 1, customer_);
    bindDouble(account_, 2, balance_);
    SQLBindCol(exists_.handle(), 1, SQL_C_SLONG, &count_, 0, nullptr);
  }

  void post(const Document& document) {
    customer_.set(document.customer);
    if (!customerExists()) throw std::runtime_error("a customer is missing");
    reference_.set(document.reference);
    date_ = document.date;
    amount_ = document.amount;
    balance_ = document.balance;
    note_.execute();
    account_.execute();
  }

 private:
  bool customerExists() {
    exists_.execute();
    exists_.check(SQLFetch(exists_.handle()));
    exists_.check(SQLFreeStmt(exists_.handle(), SQL_CLOSE));
    return count_ > 0;
  }

  BareStatement exists_;
  BareStatement note_;
  BareStatement account_;
  SQLINTEGER count_ = 0;
  TextBuffer customer_;
  TextBuffer reference_;
  TextBuffer narration_;
  SQL_TIMESTAMP_STRUCT date_{};
  double amount_ = 0;
  double balance_ = 0;
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
