// Peer: a bare ODBC loop of the simplest kind. Every value is in the statement's text, which is
// executed directly.
//
//   bench_odbc_literals COMPANY FILE FOLDER

#include <array>
#include <cstdio>
#include <span>
#include <stdexcept>

#include "bench/bare_odbc.h"

using namespace velk::bench;

namespace {

std::string quoted(const std::string& text) {
  return "'" + text + "'";
}

std::string literal(double number) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.2f", number);
  return text.data();
}

std::string literal(const SQL_TIMESTAMP_STRUCT& date) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "'%04d-%02d-%02d'", date.year, date.month, date.day);
  return text.data();
}

// The statement with each mark replaced by a literal.
std::string filled(const std::string& statement, std::span<const std::string> literals) {
  std::string sql;
  for (const char c : statement) {
    if (c != '?') {
      sql += c;
      continue;
    }
    sql += literals.front();
    literals = literals.subspan(1);
  }
  return sql;
}

class Loop {
 public:
  explicit Loop(BareConnection& connection)
      : statement_(connection.handle()),
        note_(connection.procedure("sp_insert_CustDebitNote")),
        account_(connection.procedure("sp_acc_import_customeropeningbalance")) {}

  void post(const Document& document) {
    const std::string customer = quoted(document.customer);
    statement_.executeDirect("select count(*) from Customer where CustomerID=" + customer);
    if (statement_.answer() == "0") throw std::runtime_error("a customer is missing");
    const std::string balance = literal(document.balance);
    statement_.executeDirect(
        filled(note_, std::array{customer, quoted(document.reference), literal(document.date),
                                 literal(document.amount), balance, quoted("")}));
    statement_.executeDirect(filled(account_, std::array{customer, balance}));
  }

 private:
  BareStatement statement_;
  const std::string note_;
  const std::string account_;
};

}  // namespace

int main(int argc, char** argv) {
  return runPeer(argc, argv, [](BareConnection& connection, const auto& documents) {
    Loop loop(connection);
    for (const Document& document : documents) loop.post(document);
  });
}
