// A database driver that fails as servers and their drivers were seen to fail. It has no database:
// queries answer 1, and what a procedure changes is a line in a file, the ledger, so that a test
// can hold what is said against what was done.
//
// The connection string says what happens:
//   Ledger=PATH   "procedure code" for each change that is there to stay
//   Faults=...c   a letter for each call of a procedure in its turn (faultOf); none: it works. Also
//                 the environment's FAULT_LETTERS, so that a database that has failed and one that
//                 fails no more have one name
//   Commit=       how a commit fails: refused, or done, but lost before the answer
//   FAULT_CALL    of the environment: "12 after lost once" (PlannedFault): the call of the driver
//                 that fails, from 1 on, whatever it is
//   Calls=PATH    a file that gets the number of calls that there were
//   State=42000   what a failure is reported as where its letter does not say
//   Holders=      noright: who holds a lock is not for the account to see
//   Catalogue=    what it says of procedures: missing, noright, few (parameters), list (the engine
//                 has only its list, without the procedure), none (no answer at all)
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "platform/odbc/odbc_api.h"
#include "tests/faults/planned_faults.h"

namespace {

using velk::Failure;
using velk::Fault;
using velk::faultOf;
using velk::PlannedFault;
using velk::Text;

struct Database;

struct Object {
  virtual ~Object() = default;
  virtual Database* connection() { return nullptr; }
  Failure failure;
  SQLRETURN fail(Failure with) {
    failure = std::move(with);
    return SQL_ERROR;
  }
};

struct Statement;

struct Database final : Object {
  Database* connection() override { return this; }
  PlannedFault planned;
  std::map<Text, Text> settings;
  std::size_t calls = 0;
  Statement* open = nullptr;  // whose cursor keeps all others from running
  bool stuck = false;
  bool dead = false;
  bool autocommit = true;
  bool ended = false;  // the transaction, by a procedure
  std::vector<Text> uncommitted;

  Fault nextFault() {
    const Text& letters = settings["Faults"];
    const std::size_t at = calls++;
    return faultOf(at < letters.size() ? letters[at] : '.');
  }
  bool left = false;  // one open, by a procedure
  bool inTransaction() const { return left || (!autocommit && !ended); }
  void change(const Text& line) {
    uncommitted.push_back(line);
    if (!inTransaction()) end(true);
  }
  void end(bool commit) {
    std::ofstream ledger(settings["Ledger"], std::ios::app);
    for (const Text& line : uncommitted) ledger << (commit ? line + "\n" : "");
    uncommitted.clear();
  }
};

struct Statement final : Object {
  explicit Statement(Database& of) : database(of) {}
  Database* connection() override { return &database; }
  ~Statement() override { close(); }

  Database& database;
  Text text;
  const char16_t* code = nullptr;       // the first parameter
  std::vector<std::vector<Text>> rows;  // of the result
  std::size_t row = 0;
  std::size_t columns = 0;
  Fault fault;
  std::atomic<bool> cancelled = false;

  void close() {
    rows.clear();
    columns = 0;
    fault = {};
    if (database.open == this) database.open = nullptr;
  }
  void answer(std::vector<std::vector<Text>> with) {
    rows = std::move(with);
    row = 0;
    columns = rows.empty() ? 1 : rows[0].size();
  }
  Text line(const char* more) const {
    Text name = text.substr(6, text.find_first_of("(}") - 6) + " ";
    for (const char16_t* c = code; c != nullptr && *c != 0; ++c) name += static_cast<char>(*c);
    return name + more;
  }
  SQLRETURN failed() {
    Failure with = fault.failure;
    if (with.state.empty()) with.state = database.settings["State"];
    return fail(with);
  }
  SQLRETURN run();
  SQLRETURN ask();
  SQLRETURN call();
};

bool starts(const Text& text, const char* with) {
  return text.rfind(with, 0) == 0;
}

SQLRETURN Statement::run() {
  if (database.dead) return fail({"HY000", 0, "gone"});
  if (database.stuck || database.open != nullptr) return fail({"24000", 0, "Invalid cursor state"});
  const bool posts = starts(text, "{call") && text.find("heck") == Text::npos;
  return posts ? call() : ask();
}

SQLRETURN Statement::ask() {
  const Text& catalogue = database.settings["Catalogue"];
  if (text.find("HAS_PERMS") != Text::npos) {
    if (catalogue == "list" || catalogue == "none") return fail({"42000", 195, "no such function"});
    answer({{catalogue == "missing" || catalogue == "noright" ? "0" : "1"}});
  } else if (text.find("blocking_session_id") != Text::npos) {
    if (database.settings["Holders"] == "noright") return fail({"42000", 300, "no right"});
    // Of the session that SPID answers, and no other.
    if (code != nullptr && Text(code, code + 1) == "1") answer({{"session 52 of user sa"}});
  } else if (text.find("TRANCOUNT") != Text::npos) {
    answer({{database.inTransaction() ? "1" : "0"}});
  } else if (text.find("ColorSettings") != Text::npos) {
    answer({});
  } else {
    // More columns than one are of an export.
    answer({std::vector<Text>(8, text.find("OpeningDate") != Text::npos ? "2008-04-01" : "1")});
  }
  return SQL_SUCCESS;
}

SQLRETURN Statement::call() {
  using Then = Fault::Then;
  fault = database.nextFault();
  database.left = database.left || fault.then == Then::LeavesTransaction;
  if (fault.takesEffect) database.change(line(""));
  cancelled = false;
  const bool hangs = fault.then == Then::Hangs || fault.then == Then::HangsForEver;
  while (hangs && (!cancelled || fault.then == Then::HangsForEver)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  if (fault.then == Then::LeavesCursor) database.open = this;
  database.stuck = fault.then == Then::IsStuck;
  database.dead = fault.then == Then::IsDead;
  if (fault.then == Then::Ends) {
    database.ended = true;
    database.end(true);
  }
  return fault.at == Fault::At::Execute ? failed() : SQL_SUCCESS;
}

Database& databaseOf(SQLHANDLE handle) {
  return *static_cast<Database*>(static_cast<Object*>(handle));
}
Statement& statementOf(SQLHANDLE handle) {
  return *static_cast<Statement*>(static_cast<Object*>(handle));
}

Text narrow(const SQLWCHAR* text, SQLINTEGER length) {
  Text narrowed;
  for (SQLINTEGER i = 0; length == SQL_NTS ? text[i] != 0 : i < length; ++i) {
    narrowed += static_cast<char>(text[i]);
  }
  return narrowed;
}

/// With the final NUL; answers the length in bytes.
std::size_t put(const Text& text, void* to, std::size_t capacity) {
  auto* const wide = static_cast<SQLWCHAR*>(to);
  for (std::size_t i = 0; i <= text.size() && wide != nullptr && i < capacity; ++i) {
    wide[i] = i < text.size() ? static_cast<SQLWCHAR>(text[i]) : SQLWCHAR{0};
  }
  return text.size() * sizeof(SQLWCHAR);
}

/// Does a call, unless it is planned to fail.
template <class Call>
SQLRETURN counted(SQLHANDLE handle, Call call) {
  Object& object = *static_cast<Object*>(handle);
  Database& database = *object.connection();
  PlannedFault& planned = database.planned;
  const bool due = planned.isDue();
  const SQLRETURN result = due && !planned.isAfter ? SQL_SUCCESS : call();
  if (!due) return result;
  database.dead = database.dead || planned.isLost;
  return object.fail(planned.failure);
}

}  // namespace

extern "C" {

SQLRETURN SQLAllocHandle(SQLSMALLINT type, SQLHANDLE parent, SQLHANDLE* handle) {
  Object* object = nullptr;
  if (type == SQL_HANDLE_ENV) object = new Object;
  if (type == SQL_HANDLE_DBC) object = new Database;
  if (type == SQL_HANDLE_STMT) object = new Statement(databaseOf(parent));
  *handle = object;
  return SQL_SUCCESS;
}

SQLRETURN SQLFreeHandle(SQLSMALLINT, SQLHANDLE handle) {
  delete static_cast<Object*>(handle);
  return SQL_SUCCESS;
}

SQLRETURN SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
  return SQL_SUCCESS;
}

SQLRETURN SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR* in, SQLSMALLINT length, SQLWCHAR*,
                            SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT) {
  Text rest = narrow(in, length) + ";";
  for (std::size_t end; (end = rest.find(';')) != Text::npos; rest.erase(0, end + 1)) {
    const std::size_t equals = rest.find('=');
    if (equals < end) {
      databaseOf(handle).settings[rest.substr(0, equals)] =
          rest.substr(equals + 1, end - equals - 1);
    }
  }
  Database& database = databaseOf(handle);
  if (const char* const letters = std::getenv("FAULT_LETTERS")) {
    database.settings["Faults"] = letters;
  }
  const char* const plan = std::getenv("FAULT_CALL");
  database.planned = PlannedFault(plan == nullptr ? "" : plan);
  return counted(handle, [] { return SQL_SUCCESS; });
}

SQLRETURN SQLDisconnect(SQLHDBC handle) {
  Database& database = databaseOf(handle);
  database.end(false);
  if (database.settings.contains("Calls")) {
    std::ofstream(database.settings["Calls"]) << database.planned.calls;
  }
  return SQL_SUCCESS;
}

SQLRETURN SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER value, SQLSMALLINT bytes,
                      SQLSMALLINT* length) {
  return counted(handle, [&]() -> SQLRETURN {
    const std::map<int, Text> texts{
        {SQL_DBMS_NAME, "Faults"}, {SQL_DRIVER_ODBC_VER, "03.52"}, {SQL_PROCEDURES, "Y"}};
    const auto found = texts.find(what);
    if (found == texts.end()) return SQL_ERROR;
    const std::size_t written = put(found->second, value, static_cast<std::size_t>(bytes) / 2);
    if (length != nullptr) *length = static_cast<SQLSMALLINT>(written);
    return SQL_SUCCESS;
  });
}

SQLRETURN SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
  return counted(handle, [&]() -> SQLRETURN {
    if (attribute == SQL_ATTR_AUTOCOMMIT) databaseOf(handle).autocommit = value != nullptr;
    return SQL_SUCCESS;
  });
}

SQLRETURN SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER,
                             SQLINTEGER*) {
  if (attribute != SQL_ATTR_CONNECTION_DEAD) return SQL_ERROR;
  *static_cast<SQLUINTEGER*>(value) = databaseOf(handle).dead ? SQL_CD_TRUE : SQL_CD_FALSE;
  return SQL_SUCCESS;
}

SQLRETURN SQLSetStmtAttrW(SQLHSTMT handle, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
  return counted(handle, [&]() -> SQLRETURN { return SQL_SUCCESS; });
}

SQLRETURN SQLGetStmtAttrW(SQLHSTMT, SQLINTEGER, SQLPOINTER value, SQLINTEGER, SQLINTEGER*) {
  *static_cast<SQLPOINTER*>(value) = nullptr;  // the manager asks for descriptors that nobody uses
  return SQL_SUCCESS;
}

SQLRETURN SQLEndTran(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT how) {
  return counted(handle, [&]() -> SQLRETURN {
    Database& database = databaseOf(handle);
    const Text& commit = database.settings["Commit"];
    if (database.dead || database.stuck) return database.fail({"HY000", 0, "gone"});
    if (how == SQL_COMMIT && commit == "refused") return database.fail({"40001"});
    database.end(how == SQL_COMMIT);
    database.dead = how == SQL_COMMIT && commit == "lost";
    return database.dead ? database.fail({"08S01"}) : SQL_SUCCESS;
  });
}

SQLRETURN SQLPrepareW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
  return counted(handle, [&]() -> SQLRETURN {
    statementOf(handle).text = narrow(text, length);
    return SQL_SUCCESS;
  });
}

SQLRETURN SQLExecute(SQLHSTMT handle) {
  return counted(handle, [&]() -> SQLRETURN { return statementOf(handle).run(); });
}

SQLRETURN SQLExecDirectW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
  return counted(handle, [&]() -> SQLRETURN {
    statementOf(handle).text = narrow(text, length);
    return statementOf(handle).run();
  });
}

SQLRETURN SQLBindParameter(SQLHSTMT handle, SQLUSMALLINT position, SQLSMALLINT, SQLSMALLINT,
                           SQLSMALLINT, SQLULEN, SQLSMALLINT, SQLPOINTER value, SQLLEN, SQLLEN*) {
  return counted(handle, [&]() -> SQLRETURN {
    if (position == 1) statementOf(handle).code = static_cast<const char16_t*>(value);
    return SQL_SUCCESS;
  });
}

SQLRETURN SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* columns) {
  return counted(handle, [&]() -> SQLRETURN {
    Statement& statement = statementOf(handle);
    *columns = static_cast<SQLSMALLINT>(statement.columns);
    return statement.fault.at == Fault::At::Columns ? statement.failed() : SQL_SUCCESS;
  });
}

SQLRETURN SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLSMALLINT*,
                          SQLSMALLINT* type, SQLULEN*, SQLSMALLINT*, SQLSMALLINT*) {
  return counted(handle, [&]() -> SQLRETURN {
    *type = SQL_VARCHAR;
    return SQL_SUCCESS;
  });
}

SQLRETURN SQLFetch(SQLHSTMT handle) {
  return counted(handle, [&]() -> SQLRETURN {
    Statement& statement = statementOf(handle);
    return statement.row++ < statement.rows.size() ? SQL_SUCCESS : SQL_NO_DATA;
  });
}

SQLRETURN SQLGetData(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER value,
                     SQLLEN bytes, SQLLEN* length) {
  return counted(handle, [&]() -> SQLRETURN {
    const Statement& statement = statementOf(handle);
    const Text& text = statement.rows.at(statement.row - 1).at(column - 1U);
    if (type == SQL_C_SLONG) {
      *static_cast<SQLINTEGER*>(value) = std::stoi(text);
    } else {
      *length = static_cast<SQLLEN>(put(text, value, static_cast<std::size_t>(bytes) / 2));
    }
    return SQL_SUCCESS;
  });
}

SQLRETURN SQLMoreResults(SQLHSTMT handle) {
  return counted(handle, [&]() -> SQLRETURN {
    Statement& statement = statementOf(handle);
    Database& database = statement.database;
    if (database.stuck) return statement.fail({"24000", 0, "Invalid cursor state"});
    if (statement.fault.at == Fault::At::Results) {
      const SQLRETURN failed = statement.failed();
      statement.fault = {};
      return failed;
    }
    if (database.open == &statement) {
      // On the way to the SELECT's result the rest of the procedure runs.
      database.open = nullptr;
      database.change(statement.line(" rest"));
      statement.answer({{"1"}});
      return SQL_SUCCESS;
    }
    return SQL_NO_DATA;
  });
}

SQLRETURN SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT what) {
  if (what == SQL_CLOSE) statementOf(handle).close();
  return SQL_SUCCESS;
}

SQLRETURN SQLCancel(SQLHSTMT handle) {
  statementOf(handle).cancelled = true;
  return SQL_SUCCESS;
}

// The catalogue and schema of a row are of no interest.
SQLRETURN SQLProceduresW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT,
                         SQLWCHAR* name, SQLSMALLINT length) {
  return counted(handle, [&]() -> SQLRETURN {
    Statement& statement = statementOf(handle);
    const Text& catalogue = statement.database.settings["Catalogue"];
    if (catalogue == "none") return statement.fail({"HYC00"});
    // A pattern finds more than its own name.
    const Text asked = narrow(name, length);
    statement.answer({{"", "", (catalogue == "list" ? "x" : "") + asked + ";1"}});
    return SQL_SUCCESS;
  });
}

SQLRETURN SQLProcedureColumnsW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT,
                               SQLWCHAR* name, SQLSMALLINT length, SQLWCHAR*, SQLSMALLINT) {
  return counted(handle, [&]() -> SQLRETURN {
    Statement& statement = statementOf(handle);
    const Text& catalogue = statement.database.settings["Catalogue"];
    if (catalogue == "none") return statement.fail({"HYC00"});
    const auto row = [&](int kind) {
      const std::string type = std::to_string(SQL_VARCHAR);
      return std::vector<Text>{
          "", "", narrow(name, length) + ";1", "p", std::to_string(kind), type, "varchar", "2048"};
    };
    std::vector<std::vector<Text>> rows(catalogue == "few" ? 1 : 32, row(SQL_PARAM_INPUT));
    rows.push_back(row(SQL_RETURN_VALUE));
    statement.answer(std::move(rows));
    return SQL_SUCCESS;
  });
}

SQLRETURN SQLGetDiagRecW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT record, SQLWCHAR* state,
                         SQLINTEGER* native, SQLWCHAR* message, SQLSMALLINT capacity,
                         SQLSMALLINT* length) {
  const Failure& failure = static_cast<Object*>(handle)->failure;
  if (record != 1 || failure.state.empty()) return SQL_NO_DATA;
  put(failure.state, state, 6);
  *native = failure.native;
  *length = static_cast<SQLSMALLINT>(
      put(failure.message, message, static_cast<std::size_t>(capacity)) / 2);
  return SQL_SUCCESS;
}

// The manager reads no records from a driver without it.
SQLRETURN SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER,
                           SQLSMALLINT, SQLSMALLINT*) {
  return SQL_NO_DATA;
}

}  // extern "C"
