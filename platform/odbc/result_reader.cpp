#include "platform/odbc/result_reader.h"

namespace velk {
namespace {

class ResultReader {
 public:
  ResultReader(OdbcSession& session, SQLHANDLE statement, std::vector<CellKind>& kinds)
      : session_(session), statement_(statement), kinds_(kinds) {}
  ~ResultReader() {
    if (hasCursor_) SQLFreeStmt(statement_, SQL_CLOSE);
  }
  ResultReader(const ResultReader&) = delete;
  ResultReader& operator=(const ResultReader&) = delete;

  // A statement that touched no row answers "no data", which is a success.
  std::shared_ptr<MemoryRecordset> readAll(SQLRETURN executed) {
    if (executed != SQL_NO_DATA) check(executed);
    auto first = readOne();
    if (session_.dialect().hasSingleResults()) return first;
    hasCursor_ = true;
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
    kinds_.resize(static_cast<std::size_t>(columns));
    for (std::size_t i = 0; i < kinds_.size(); ++i) {
      kinds_[i] = describeColumn(session_, statement_, number(i));
    }
    return readRows();
  }

  std::vector<Value> readRows() {
    std::vector<Value> cells;
    for (SQLRETURN fetched; (fetched = SQLFetch(statement_)) != SQL_NO_DATA;) {
      check(fetched);
      for (std::size_t i = 0; i < kinds_.size(); ++i) {
        cells.push_back(readCell(session_, statement_, number(i), kinds_[i]));
      }
    }
    return cells;
  }

  static SQLUSMALLINT number(std::size_t column) { return static_cast<SQLUSMALLINT>(column + 1); }

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
  std::vector<CellKind>& kinds_;
  bool hasCursor_ = false;
};

}  // namespace

std::shared_ptr<MemoryRecordset> readResults(OdbcSession& session, SQLHANDLE statement,
                                             SQLRETURN executed, std::vector<CellKind>& kinds) {
  return ResultReader(session, statement, kinds).readAll(executed);
}

}  // namespace velk
