#include "platform/odbc/result_reader.h"

#include <array>
#include <optional>
#include <vector>

#include "base/errors.h"
#include "base/text.h"
#include "platform/odbc/cell_text.h"

namespace velk {
namespace {

constexpr std::size_t chunkCharacters = 1024;  // one piece for all but unusually long texts
constexpr int mostFailures = 100;  // of one statement; a driver that never says "no more" ends here

Date toDate(const SQL_TIMESTAMP_STRUCT& stamp) {
  const double seconds =
      stamp.hour * 3600.0 + stamp.minute * 60.0 + stamp.second + stamp.fraction * 1e-9;
  return dateFromCivil({stamp.year, stamp.month, stamp.day}, seconds / secondsPerDay);
}

// To some drivers the question itself is wrong when there is nothing more.
bool hasNothingLeft(const std::vector<Diagnostic>& diagnostics) {
  return !diagnostics.empty() &&
         (diagnostics.back().state == "HY010" || diagnostics.back().state == "IM001");
}

class ResultReader {
 public:
  ResultReader(OdbcSession& session, SQLHANDLE statement)
      : session_(session), statement_(statement) {}
  ~ResultReader() {
    // A statement that stays prepared cannot be executed again while its cursor is open.
    if (hasCursor_ && !SQL_SUCCEEDED(SQLFreeStmt(statement_, SQL_CLOSE))) session_.giveUp();
  }
  ResultReader(const ResultReader&) = delete;
  ResultReader& operator=(const ResultReader&) = delete;

  std::shared_ptr<MemoryRecordset> readAll(SQLRETURN executed) {
    try {
      auto first = readFirst(executed);
      if (session_.dialect().hasSingleResults) return first;
      hasCursor_ = true;
      for (auto last = first; last != nullptr;) last = readNext(*last);
      return first;
    } catch (const RuntimeError& error) {
      passOver(error);
      throw;
    }
  }

 private:
  void check(SQLRETURN result) { session_.checkStatement(result, statement_); }

  // A statement that touched no row answers "no data", which is a success.
  std::shared_ptr<MemoryRecordset> readFirst(SQLRETURN executed) {
    if (executed != SQL_NO_DATA) check(executed);
    return readOne();
  }

  // The rest of a procedure runs only while its results are asked for, and a result that is left
  // open keeps every later statement of the connection from running.
  void passOver(const RuntimeError& error) {
    hasCursor_ = true;
    // Nobody knows how long another answer would take; closing has to do.
    if (error.is(ErrorNumber::ProviderTimeout) || session_.dialect().endsResultsByError) return;
    for (int failures = 0; !session_.isLost() && failures < mostFailures;) {
      const SQLRETURN more = SQLMoreResults(statement_);
      if (more == SQL_NO_DATA) return;
      if (SQL_SUCCEEDED(more)) continue;
      ++failures;
      session_.addDiagnostics(statement_);
      if (hasNothingLeft(session_.diagnostics())) return;
    }
    session_.giveUp();
  }

  std::shared_ptr<MemoryRecordset> readOne() {
    SQLSMALLINT columns = 0;
    check(SQLNumResultCols(statement_, &columns));
    // A statement without columns still answers an object, a closed one.
    if (columns <= 0) return std::make_shared<MemoryRecordset>();
    hasCursor_ = true;
    return std::make_shared<MemoryRecordset>(static_cast<std::size_t>(columns), readCells(columns));
  }

  std::vector<Value> readCells(SQLSMALLINT columns) {
    std::vector<CellReading> readings;
    for (SQLSMALLINT i = 1; i <= columns; ++i) {
      readings.push_back(cellReadingOf(typeOf(static_cast<SQLUSMALLINT>(i))));
    }
    std::vector<Value> cells;
    for (SQLRETURN fetched; (fetched = SQLFetch(statement_)) != SQL_NO_DATA;) {
      check(fetched);
      SQLUSMALLINT column = 0;
      for (const CellReading reading : readings) cells.push_back(readCell(++column, reading));
    }
    return cells;
  }

  SQLSMALLINT typeOf(SQLUSMALLINT column) {
    // If the driver leaves it unset, the column is read as text.
    SQLSMALLINT type = SQL_VARCHAR;
    SQLSMALLINT unused = 0;
    SQLULEN size = 0;
    check(SQLDescribeColW(statement_, column, nullptr, 0, &unused, &type, &size, &unused, &unused));
    return type;
  }

  // Each cell only once, columns in ascending order: more than that few drivers can do.
  Value readCell(SQLUSMALLINT column, CellReading reading) {
    // Where a cell may be of any kind, only its text shows which.
    if (!session_.dialect().hasDynamicTypes) {
      if (reading == dateCell) {
        const auto stamp = readFixed<SQL_TIMESTAMP_STRUCT>(column, SQL_C_TYPE_TIMESTAMP);
        return stamp ? Value(toDate(*stamp)) : Null{};
      }
      if (reading == doubleCell) {
        const auto number = readFixed<double>(column, SQL_C_DOUBLE);
        return number ? Value(*number) : Null{};
      }
    }
    const auto text = readText(column);
    return text ? reading(toUtf8(*text)) : Null{};
  }

  /// Empty for a null; so is readText.
  template <class Fixed>
  std::optional<Fixed> readFixed(SQLUSMALLINT column, SQLSMALLINT cType) {
    Fixed memory{};
    SQLLEN indicator = 0;
    check(SQLGetData(statement_, column, cType, &memory, sizeof memory, &indicator));
    return indicator == SQL_NULL_DATA ? std::nullopt : std::optional(memory);
  }

  // A long cell comes in pieces, each but the last as long as the memory for it without its final
  // NUL.
  std::optional<std::u16string> readText(SQLUSMALLINT column) {
    std::array<char16_t, chunkCharacters> chunk;
    std::u16string text;
    for (bool more = true; more;) {
      SQLLEN bytes = 0;
      const SQLRETURN result =
          SQLGetData(statement_, column, SQL_C_WCHAR, chunk.data(), sizeof chunk, &bytes);
      // The piece before was the last one, and the driver could not tell the length.
      if (result == SQL_NO_DATA) break;
      check(result);
      if (bytes == SQL_NULL_DATA) return std::nullopt;
      // `bytes` is what was left before this piece, not what the piece has.
      more = bytes == SQL_NO_TOTAL || bytes >= static_cast<SQLLEN>(sizeof chunk);
      text.append(chunk.data(),
                  more ? chunk.size() - 1 : static_cast<std::size_t>(bytes) / sizeof(char16_t));
    }
    return text;
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
      passOver(error);
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
