#include "platform/odbc/result_reader.h"

#include <vector>

#include "platform/odbc/cell_reader.h"

namespace velk {
namespace {

class ResultReader {
 public:
  ResultReader(OdbcSession& session, SQLHANDLE statement)
      : session_(session), statement_(statement) {}
  ~ResultReader() {
    if (hasCursor_) SQLFreeStmt(statement_, SQL_CLOSE);
  }
  ResultReader(const ResultReader&) = delete;
  ResultReader& operator=(const ResultReader&) = delete;

  // A statement that touched no row answers "no data", which is a success.
  std::shared_ptr<MemoryRecordset> readAll(SQLRETURN executed) {
    if (executed != SQL_NO_DATA) check(executed);
    auto first = readOne();
    if (session_.dialect().hasSingleResults) return first;
    hasCursor_ = true;  // closing is what drops results that an error left unread
    for (auto last = first; last != nullptr;) last = readNext(*last);
    return first;
  }

 private:
  void check(SQLRETURN result) { session_.check(result, SQL_HANDLE_STMT, statement_); }

  std::shared_ptr<MemoryRecordset> readOne() {
    SQLSMALLINT columns = 0;
    check(SQLNumResultCols(statement_, &columns));
    if (columns <= 0) return std::make_shared<MemoryRecordset>();
    hasCursor_ = true;
    return std::make_shared<MemoryRecordset>(static_cast<std::size_t>(columns), readCells(columns));
  }

  std::vector<Value> readCells(SQLSMALLINT columns) {
    std::vector<ColumnKind> kinds;
    for (SQLSMALLINT i = 1; i <= columns; ++i) {
      kinds.push_back(describeColumn(session_, statement_, static_cast<SQLUSMALLINT>(i)));
    }
    std::vector<Value> cells;
    for (SQLRETURN fetched; (fetched = SQLFetch(statement_)) != SQL_NO_DATA;) {
      check(fetched);
      SQLUSMALLINT column = 0;
      for (const ColumnKind kind : kinds) {
        cells.push_back(readCell(session_, statement_, ++column, kind));
      }
    }
    return cells;
  }

  // An error belongs to the result before it, where the caller asks for the next one.
  std::shared_ptr<MemoryRecordset> readNext(MemoryRecordset& before) {
    try {
      const SQLRETURN more = SQLMoreResults(statement_);
      if (more == SQL_NO_DATA) return nullptr;
      check(more);
      auto next = readOne();
      before.setNext(next);
      return next;
    } catch (const RuntimeError& error) {
      before.setNextError(error);
      return nullptr;
    }
  }

  OdbcSession& session_;
  SQLHANDLE statement_;
  bool hasCursor_ = false;
};

}  // namespace

std::shared_ptr<MemoryRecordset> readResults(OdbcSession& session, SQLHANDLE statement,
                                             SQLRETURN executed) {
  return ResultReader(session, statement).readAll(executed);
}

}  // namespace velk
