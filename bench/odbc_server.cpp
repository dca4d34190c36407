// Peer: a bare ODBC loop on a server. Each statement is prepared once, its parameters are bound
// once, and a record costs three round trips.
//
//   bench_odbc_server CONNECTION-STRING FILE FOLDER

#include <stdexcept>

#include "bench/bare_odbc.h"

using namespace velk::bench;

namespace {

class Loop {
 public:
  explicit Loop(BareConnection& connection)
      : exists_(connection.handle()), note_(connection.handle()), account_(connection.handle()) {
    // A function on PostgreSQL.
    const bool isFunction = connection.engine() == "PostgreSQL";
    exists_.prepare("select count(*) from Customer where CustomerID=?");
    bindText(exists_, 1, customer_);
    note_.prepare(std::string(isFunction ? "SELECT * FROM" : "CALL") +
                  " sp_insert_CustDebitNote(?, ?, ?, ?, ?, ?)");
    bindText(note_, 1, customer_);
    bindText(note_, 2, reference_);
    bindDate(note_, 3, date_);
    bindDouble(note_, 4, amount_);
    bindDouble(note_, 5, balance_);
    bindText(note_, 6, narration_);
    account_.prepare("CALL sp_acc_import_customeropeningbalance(?, ?)");
    bindText(account_, 1, customer_);
    bindDouble(account_, 2, balance_);
  }

  void post(const Document& document) {
    customer_.set(document.customer);
    exists_.execute();
    if (exists_.answer() == "0") throw std::runtime_error("a customer is missing");
    reference_.set(document.reference);
    date_ = document.date;
    amount_ = document.amount;
    balance_ = document.balance;
    note_.call();
    account_.call();
  }

 private:
  BareStatement exists_;
  BareStatement note_;
  BareStatement account_;
  TextBuffer customer_;
  TextBuffer reference_;
  TextBuffer narration_;
  SQL_TIMESTAMP_STRUCT date_{};
  double amount_ = 0;
  double balance_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  return runPeer(argc, argv, [](BareConnection& connection, const auto& documents) {
    Loop loop(connection);
    for (const Document& document : documents) loop.post(document);
  });
}
