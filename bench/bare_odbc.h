// What a program writes that talks to ODBC directly, with nothing in between: the peers of the
// import. It does an import's statements with the records ready in memory.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "platform/odbc/odbc_api.h"

namespace velk::bench {

struct Document {
  std::string customer;
  std::string reference;
  SQL_TIMESTAMP_STRUCT date{};
  double amount = 0;
  double balance = 0;
};

/// Throws with the first diagnostic record of the handle unless the call succeeded.
void check(SQLRETURN result, SQLSMALLINT handleType, SQLHANDLE handle);

/// A statement handle of one connection.
class BareStatement {
 public:
  explicit BareStatement(SQLHANDLE connection);
  BareStatement(const BareStatement&) = delete;
  BareStatement& operator=(const BareStatement&) = delete;
  ~BareStatement() { SQLFreeHandle(SQL_HANDLE_STMT, handle_); }

  SQLHANDLE handle() const { return handle_; }
  void check(SQLRETURN result) const { bench::check(result, SQL_HANDLE_STMT, handle_); }

  void prepare(const std::string& sql);
  /// A statement that changes no row is no error.
  void execute() const;
  /// The same for a call that may answer rows, which are passed over.
  void call() const;
  void executeDirect(const std::string& sql) const;
  /// The result's first cell as a text, and its end.
  std::string answer() const;

 private:
  SQLHANDLE handle_ = nullptr;
};

/// A text parameter's memory.
struct TextBuffer {
  std::array<char, 64> text{};
  SQLLEN length = 0;

  void set(const std::string& value) {
    length = static_cast<SQLLEN>(value.copy(text.data(), text.size()));
  }
};

/// Binds the buffer to a mark of a prepared statement, from 1.
void bindText(const BareStatement& to, SQLUSMALLINT mark, TextBuffer& buffer);
void bindDouble(const BareStatement& to, SQLUSMALLINT mark, double& number);
void bindDate(const BareStatement& to, SQLUSMALLINT mark, SQL_TIMESTAMP_STRUCT& date);

/// The statements of a document, each prepared once and its parameters bound once.
class DocumentStatements {
 public:
  DocumentStatements(SQLHANDLE connection, const std::string& noteSql,
                     const std::string& accountSql);

  /// The document that they are executed with.
  void set(const Document& document);

  BareStatement exists;
  BareStatement note;
  BareStatement account;

 private:
  TextBuffer customer_;
  TextBuffer reference_;
  TextBuffer narration_;
  SQL_TIMESTAMP_STRUCT date_{};
  double amount_ = 0;
  double balance_ = 0;
};

/// A connection to an embedded database that checks references, as the import's own do, or to a
/// server, by its connection string.
class BareConnection {
 public:
  explicit BareConnection(const std::string& company);
  BareConnection(const BareConnection&) = delete;
  BareConnection& operator=(const BareConnection&) = delete;
  ~BareConnection();

  SQLHANDLE handle() const { return connection_; }
  std::string engine() const;  ///< as its driver names it
  /// The statement of a stored procedure that has one step and takes its parameters in order.
  std::string procedure(const std::string& name) const;

 private:
  SQLHANDLE environment_ = nullptr;
  SQLHANDLE connection_ = nullptr;
};

/// The main function of a peer: COMPANY FILE FOLDER as arguments. An embedded company is copied; of
/// a server's the documents that are there are removed. `post` does one whole import.
int runPeer(int argc, char** argv,
            const std::function<void(BareConnection&, const std::vector<Document>&)>& post);

}  // namespace velk::bench
