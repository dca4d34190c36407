#include "bench/bare_odbc.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "bench/company_copy.h"
#include "bench/measurement.h"
#include "platform/odbc/odbc_connection.h"

namespace velk::bench {

namespace {

bool isServer(const std::string& company) {
  return company.find('=') != std::string::npos;
}

SQLCHAR* narrowText(const std::string& text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));
}

// The file has no quotes that matter here: the customer's name is the only field with any.
Document parseDocument(const std::string& line) {
  const std::size_t nameEnd = line.rfind(",INV/");
  Document document;
  document.customer = line.substr(0, line.find(','));
  std::array<char, 64> reference{};
  require(std::sscanf(line.c_str() + nameEnd, ",%63[^,],%hu/%hu/%hd,%lf,%lf", reference.data(),
                      &document.date.day, &document.date.month, &document.date.year,
                      &document.amount, &document.balance) == 6,
          "a record of the input file can't be read");
  document.reference = reference.data();
  return document;
}

std::vector<Document> readDocuments(const char* path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<Document> documents;
  std::string line;
  std::getline(file, line);  // the titles
  while (std::getline(file, line)) documents.push_back(parseDocument(line));
  return documents;
}

}  // namespace

void check(SQLRETURN result, SQLSMALLINT handleType, SQLHANDLE handle) {
  if (SQL_SUCCEEDED(result)) return;
  std::array<SQLCHAR, 6> state{};
  std::array<SQLCHAR, 512> message{};
  SQLINTEGER native = 0;
  SQLGetDiagRec(handleType, handle, 1, state.data(), &native, message.data(),
                static_cast<SQLSMALLINT>(message.size()), nullptr);
  throw std::runtime_error(reinterpret_cast<const char*>(message.data()));
}

BareStatement::BareStatement(SQLHANDLE connection) {
  bench::check(SQLAllocHandle(SQL_HANDLE_STMT, connection, &handle_), SQL_HANDLE_DBC, connection);
}

void BareStatement::prepare(const std::string& sql) {
  check(SQLPrepare(handle_, narrowText(sql), SQL_NTS));
}

void BareStatement::execute() const {
  const SQLRETURN result = SQLExecute(handle_);
  if (result != SQL_NO_DATA) check(result);
}

void BareStatement::call() const {
  execute();
  check(SQLFreeStmt(handle_, SQL_CLOSE));
}

void BareStatement::executeDirect(const std::string& sql) const {
  check(SQLExecDirect(handle_, narrowText(sql), SQL_NTS));
}

void bindText(const BareStatement& to, SQLUSMALLINT mark, TextBuffer& buffer) {
  to.check(SQLBindParameter(to.handle(), mark, SQL_PARAM_INPUT, SQL_C_CHAR, SQL_VARCHAR,
                            buffer.text.size(), 0, buffer.text.data(),
                            static_cast<SQLLEN>(buffer.text.size()), &buffer.length));
}

void bindDouble(const BareStatement& to, SQLUSMALLINT mark, double& number) {
  to.check(SQLBindParameter(to.handle(), mark, SQL_PARAM_INPUT, SQL_C_DOUBLE, SQL_DOUBLE, 0, 0,
                            &number, 0, nullptr));
}

void bindDate(const BareStatement& to, SQLUSMALLINT mark, SQL_TIMESTAMP_STRUCT& date) {
  to.check(SQLBindParameter(to.handle(), mark, SQL_PARAM_INPUT, SQL_C_TYPE_TIMESTAMP,
                            SQL_TYPE_TIMESTAMP, 23, 3, &date, 0, nullptr));
}

std::string BareStatement::answer() const {
  std::array<char, 512> text{};
  check(SQLFetch(handle_));
  check(SQLGetData(handle_, 1, SQL_C_CHAR, text.data(), text.size(), nullptr));
  check(SQLFreeStmt(handle_, SQL_CLOSE));
  return text.data();
}

DocumentStatements::DocumentStatements(SQLHANDLE connection, const std::string& noteSql,
                                       const std::string& accountSql)
    : exists(connection), note(connection), account(connection) {
  exists.prepare("select count(*) from Customer where CustomerID=?");
  bindText(exists, 1, customer_);
  note.prepare(noteSql);
  bindText(note, 1, customer_);
  bindText(note, 2, reference_);
  bindDate(note, 3, date_);
  bindDouble(note, 4, amount_);
  bindDouble(note, 5, balance_);
  bindText(note, 6, narration_);
  account.prepare(accountSql);
  bindText(account, 1, customer_);
  bindDouble(account, 2, balance_);
}

void DocumentStatements::set(const Document& document) {
  customer_.set(document.customer);
  reference_.set(document.reference);
  date_ = document.date;
  amount_ = document.amount;
  balance_ = document.balance;
}

BareConnection::BareConnection(const std::string& company) {
  const std::string string = isServer(company) ? company : embeddedConnectionString(company);
  SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &environment_);
  SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, integerArgument(SQL_OV_ODBC3), 0);
  SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_);
  check(SQLDriverConnect(connection_, nullptr, narrowText(string), SQL_NTS, nullptr, 0, nullptr,
                         SQL_DRIVER_NOPROMPT),
        SQL_HANDLE_DBC, connection_);
  if (!isServer(company)) BareStatement(connection_).executeDirect("PRAGMA foreign_keys = ON");
}

BareConnection::~BareConnection() {
  SQLDisconnect(connection_);
  SQLFreeHandle(SQL_HANDLE_DBC, connection_);
  SQLFreeHandle(SQL_HANDLE_ENV, environment_);
}

std::string BareConnection::engine() const {
  std::array<SQLCHAR, 64> name{};
  SQLGetInfo(connection_, SQL_DBMS_NAME, name.data(), name.size(), nullptr);
  return reinterpret_cast<const char*>(name.data());
}

std::string BareConnection::procedure(const std::string& name) const {
  BareStatement query(connection_);
  query.executeDirect("SELECT statement FROM StoredProcedure WHERE name = '" + name + "'");
  return query.answer();
}

int runPeer(int argc, char** argv,
            const std::function<void(BareConnection&, const std::vector<Document>&)>& post) {
  return runMeasurement([&] {
    require(argc == 4, "usage: PROGRAM COMPANY FILE FOLDER");
    std::optional<CompanyCopy> copy;
    if (!isServer(argv[1])) copy.emplace(argv[1], argv[3]);
    BareConnection connection(copy ? copy->path() : argv[1]);
    for (const char* table : {"CustomerDebitNote", "CustomerOpeningBalance"}) {
      if (!copy)
        BareStatement(connection.handle()).executeDirect(std::string("TRUNCATE TABLE ") + table);
    }
    const std::vector<Document> documents = readDocuments(argv[2]);
    Stopwatch watch;
    post(connection, documents);
    watch.stop();
    BareStatement count(connection.handle());
    count.executeDirect("SELECT count(*) FROM CustomerDebitNote");
    watch.report(std::stoul(count.answer()));
  });
}

}  // namespace velk::bench
