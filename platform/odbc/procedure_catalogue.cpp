#include "platform/odbc/procedure_catalogue.h"

#include <array>
#include <optional>

#include "base/text.h"
#include "platform/odbc/prepared_statement.h"

namespace velk {
namespace {

// Places in the answers of the catalogue's functions.
constexpr SQLUSMALLINT nameColumn = 3;
constexpr SQLUSMALLINT parameterNameColumn = 4;
constexpr SQLUSMALLINT parameterKindColumn = 5;
constexpr SQLUSMALLINT typeNameColumn = 7;
constexpr SQLUSMALLINT lengthColumn = 8;

std::optional<std::string> textAt(SQLHANDLE statement, SQLUSMALLINT column) {
  std::array<char16_t, 256> text{};
  SQLLEN bytes = 0;
  const SQLRETURN result =
      SQLGetData(statement, column, SQL_C_WCHAR, text.data(), sizeof text, &bytes);
  if (!SQL_SUCCEEDED(result) || bytes == SQL_NULL_DATA) return std::nullopt;
  return toUtf8(text.data());
}

std::optional<SQLINTEGER> numberAt(SQLHANDLE statement, SQLUSMALLINT column) {
  SQLINTEGER number = 0;
  SQLLEN indicator = 0;
  const SQLRETURN result =
      SQLGetData(statement, column, SQL_C_SLONG, &number, sizeof number, &indicator);
  if (!SQL_SUCCEEDED(result) || indicator == SQL_NULL_DATA) return std::nullopt;
  return number;
}

bool listsProcedures(SQLHANDLE connection) {
  std::array<char16_t, 8> answer{};
  SQLSMALLINT bytes = 0;
  return SQL_SUCCEEDED(
             SQLGetInfoW(connection, SQL_PROCEDURES, answer.data(), sizeof answer, &bytes)) &&
         answer[0] == u'Y';
}

/// Calls `take` for each row about the procedure; false if the list broke off. The function's
/// pattern finds others, too, and some engines add a version: "name;1".
template <class Take>
bool forEachRow(SQLHANDLE statement, std::string_view procedure, Take&& take) {
  for (SQLRETURN fetched; (fetched = SQLFetch(statement)) != SQL_NO_DATA;) {
    if (!SQL_SUCCEEDED(fetched)) return false;
    const std::optional<std::string> name = textAt(statement, nameColumn);
    if (!name) return false;
    if (equalsIgnoringCase(std::string_view(*name).substr(0, name->find(';')), procedure)) take();
  }
  return true;
}

/// As the catalogue has it: engines that ignore letter case may keep names in small letters.
std::u16string listedName(const OdbcSession& session, std::string_view procedure) {
  SQLUSMALLINT kept = SQL_IC_MIXED;
  SQLGetInfoW(session.handle(), SQL_IDENTIFIER_CASE, &kept, sizeof kept, nullptr);
  return toUtf16(kept == SQL_IC_LOWER ? lowerAscii(procedure) : std::string(procedure));
}

bool isUnlisted(const OdbcSession& session, std::string_view procedure) {
  if (!listsProcedures(session.handle())) return false;
  const StatementHandle statement = session.newStatement();
  const std::u16string name = listedName(session, procedure);
  std::size_t found = 0;
  return SQL_SUCCEEDED(SQLProceduresW(statement.get(), nullptr, 0, nullptr, 0,
                                      wideText(name.c_str()), SQL_NTS)) &&
         forEachRow(statement.get(), procedure, [&] { ++found; }) && found == 0;
}

/// Those that a call passes; empty if the catalogue lists nothing of the procedure.
std::optional<std::vector<CatalogueParameter>> listedParameters(const OdbcSession& session,
                                                                std::string_view procedure) {
  const StatementHandle statement = session.newStatement();
  const std::u16string name = listedName(session, procedure);
  std::size_t rows = 0;
  std::vector<CatalogueParameter> parameters;
  // Drivers may refuse to go back to an earlier column.
  const auto read = [&] {
    ++rows;
    CatalogueParameter parameter;
    parameter.name = textAt(statement.get(), parameterNameColumn).value_or("");
    const auto kind = numberAt(statement.get(), parameterKindColumn).value_or(SQL_PARAM_INPUT);
    parameter.type = textAt(statement.get(), typeNameColumn).value_or("");
    const bool isText = lowerAscii(parameter.type).find("char") != std::string::npos;
    if (isText && session.dialect().keepsParameterLengths) {
      parameter.length = numberAt(statement.get(), lengthColumn).value_or(0);
    }
    if (kind != SQL_RETURN_VALUE && kind != SQL_RESULT_COL) parameters.push_back(parameter);
  };
  const bool listed =
      SQL_SUCCEEDED(SQLProcedureColumnsW(statement.get(), nullptr, 0, nullptr, 0,
                                         wideText(name.c_str()), SQL_NTS, nullptr, 0)) &&
      forEachRow(statement.get(), procedure, read) && rows > 0;
  return listed ? std::optional(std::move(parameters)) : std::nullopt;
}

// Too few are no proof, because the catalogue does not tell which ones have a default value.
bool hasTooMany(const OdbcSession& session, std::string_view procedure, std::size_t passed) {
  const auto listed = listedParameters(session, procedure);
  return listed && passed > listed->size();
}

/// The number that a query of the dialect answers about the procedure; empty if there is no such
/// query, or if the engine does not understand it.
std::optional<SQLINTEGER> answer(const OdbcSession& session, std::string_view query,
                                 std::string_view procedure) {
  if (query.empty()) return std::nullopt;
  const StatementHandle statement = session.newStatement();
  const std::u16string text = toUtf16(withProcedure(query, procedure));
  if (!SQL_SUCCEEDED(SQLExecDirectW(statement.get(), wideText(text.c_str()), SQL_NTS)) ||
      !SQL_SUCCEEDED(SQLFetch(statement.get()))) {
    return std::nullopt;
  }
  return numberAt(statement.get(), 1);
}

}  // namespace

std::string withProcedure(std::string_view query, std::string_view procedure) {
  std::string literal = "'";
  for (const char c : procedure) literal.append(c == '\'' ? 2 : 1, c);
  literal += '\'';
  std::string text;
  for (const char c : query) c == '?' ? text.append(literal) : text.append(1, c);
  return text;
}

bool cannotHaveRun(const OdbcSession& session, std::string_view procedure,
                   std::size_t parameterCount) {
  const auto runnable = answer(session, session.dialect().canRun, procedure);
  const bool barred = runnable ? *runnable == 0 : isUnlisted(session, procedure);
  return barred || hasTooMany(session, procedure, parameterCount);
}

std::vector<CatalogueParameter> catalogueParameters(const OdbcSession& session,
                                                    std::string_view procedure) {
  return listedParameters(session, procedure).value_or(std::vector<CatalogueParameter>{});
}

bool hasAtomicCalls(const OdbcSession& session, std::string_view procedure) {
  const Dialect& dialect = session.dialect();
  return dialect.hasAtomicCalls || answer(session, dialect.hasAtomicCallsQuery, procedure) == 1;
}

std::string callBefore(OdbcSession& session, std::string_view procedure) {
  const Dialect& dialect = session.dialect();
  if (dialect.callBeforeQuery.empty()) return std::string(dialect.callBefore);
  const OnlyAsking asking(session);
  PreparedStatement query(session, withProcedure(dialect.callBeforeQuery, procedure));
  return toText(query.execute({})->field(0));
}

}  // namespace velk
