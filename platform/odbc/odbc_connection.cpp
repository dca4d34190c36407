#include "platform/odbc/odbc_connection.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <utility>

#include "base/text.h"
#include "platform/odbc/call_text.h"
#include "platform/odbc/driver_path.h"
#include "platform/odbc/joint_query.h"
#include "platform/odbc/paired_calls.h"
#include "platform/odbc/procedure_catalogue.h"
#include "platform/odbc/statement_shape.h"
#include "platform/odbc/stored_procedures.h"

namespace velk {
namespace {

// A connection through the driver of any engine.
class DriverConnection final : public OwnConnection,
                               public std::enable_shared_from_this<DriverConnection> {
 public:
  DriverConnection(std::string_view connectionString, const OdbcOptions& options)
      : session_(connectionString, options),
        sendsPairs_(!options.oneByOne),
        procedures_(session_),
        pairs_(session_) {
    joinCluster();
  }
  ~DriverConnection() override;

  std::shared_ptr<Recordset> Execute(std::string_view text) override;
  std::unique_ptr<Command> newCommand() override;
  std::unique_ptr<CallPair> postBoth(const ProcedureCall& first,
                                     const ProcedureCall& second) override;
  std::vector<Diagnostic> diagnostics() const override { return session_.diagnostics(); }
  bool changedNothing() const override { return changedNothing_; }
  bool isRefused(std::string_view procedure, std::size_t parameters) override;
  bool isLost() const override { return session_.isLost(); }
  bool isSpent() const override;
  std::vector<Value> askTogether(std::span<const std::string> queries) override;
  std::size_t repeatedCalls() const override { return repeatedCalls_; }
  void cancel() override { session_.cancel(); }
  void beginTransaction() override;
  void rollback() override { endTransaction(SQL_ROLLBACK); }
  void commit() override { endTransaction(SQL_COMMIT); }
  bool isInTransaction() override;
  bool canLeaveTransactions() const override { return session_.dialect().canLeaveTransactions; }
  Date earliestDate() const override { return session_.dialect().earliestDate; }
  std::string identity(bool mayStore) override;
  bool hasDatabase() override {
    const std::string_view query = session_.dialect().databaseQuery;
    return query.empty() || !answer(query).empty();
  }
  DatabaseFacts facts() override;
  std::vector<CatalogueParameter> parametersOf(std::string_view procedure) override;
  std::string whyNotReady() override { return answer(session_.dialect().notReadyQuery); }
  std::string history() override { return answer(session_.dialect().historyQuery); }
  std::string session() override { return answer(session_.dialect().sessionQuery); }
  std::string file() override { return answer(session_.dialect().fileQuery); }
  std::string place() override { return answer(session_.dialect().placeQuery); }
  bool hasEnded(std::string_view session, std::string_view place) override;
  LockHolders lockHolders(std::string_view session) override;

  std::shared_ptr<Recordset> run(CommandType type, std::string_view text,
                                 const std::vector<CommandParameter>& parameters);

 private:
  /// Each row's first field; nothing if the engine refuses the query, or there is none.
  std::vector<std::string> texts(std::string_view query);
  void joinCluster();
  std::shared_ptr<Recordset> callOnNode(std::string_view name,
                                        const std::vector<CommandParameter>& parameters);
  bool takeBack();
  /// The first field of the first row as text; empty without a row, or without a query.
  std::string answer(std::string_view query);
  /// Empty where none is stored.
  std::string storedIdentity();
  std::shared_ptr<Recordset> call(std::string_view name,
                                  const std::vector<CommandParameter>& parameters);
  bool isKnownToChangeNothing(std::string_view name, std::size_t parameters,
                              const RuntimeError& error) const;
  PreparedStatement& kept(std::string_view sql);
  PreparedStatement& procedure(std::string_view name, std::size_t parameters);
  void requireWhole(std::string_view text) const;
  void setInTransaction(bool in);
  void endTransaction(SQLSMALLINT how);

  OdbcSession session_;  // first, because the statements below need it until they are gone
  // By text, calls by name and number of parameters. Only the system's own statements and calls of
  // procedures, so that it stays small.
  std::map<std::string, PreparedStatement, std::less<>> kept_;
  const bool sendsPairs_;
  StoredProcedures procedures_;
  PairedCalls pairs_;
  std::map<std::string, bool, std::less<>> refused_;
  bool inTransaction_ = false;
  bool changedNothing_ = false;
  bool isOnNode_ = false;     // of a cluster
  bool isTakenBack_ = false;  // the call that failed, and nothing of it was committed
  std::size_t repeatedCalls_ = 0;
};

class OdbcCommand final : public Command {
 public:
  explicit OdbcCommand(std::shared_ptr<DriverConnection> connection)
      : connection_(std::move(connection)) {}

  void setCommandType(CommandType type) override { type_ = type; }
  void setCommandText(std::string_view text) override { text_ = text; }
  // Neither name nor size counts: parameters are bound by position, and all have one size.
  void Append(std::string_view, std::int32_t type, std::int32_t direction, std::int32_t) override {
    CommandParameter& parameter = parameters_.emplace_back();
    parameter.type = type;
    parameter.direction = direction;
  }
  void setValue(std::size_t position, const Value& value) override {
    if (position >= parameters_.size()) throw RuntimeError(ErrorNumber::ItemNotFound);
    parameters_[position].value = value;
  }
  /// The options are ADO's; a driver has none of them.
  std::shared_ptr<Recordset> Execute(std::int32_t) override;

 private:
  std::shared_ptr<DriverConnection> connection_;
  CommandType type_ = CommandType::Text;
  std::string text_;
  std::vector<CommandParameter> parameters_;
};

std::shared_ptr<Recordset> OdbcCommand::Execute(std::int32_t) {
  for (const CommandParameter& parameter : parameters_) {
    // There is nothing here that could take an output parameter's value.
    if (parameter.direction != inputParameter) throw RuntimeError(ErrorNumber::WrongArgumentType);
  }
  return connection_->run(type_, text_, parameters_);
}

// A literal may be longer than a parameter: in the statement's own text it would have no limit.
std::vector<CommandParameter> asParameters(std::vector<std::string>& literals) {
  std::vector<CommandParameter> parameters;
  for (std::string& literal : literals) {
    const std::size_t size = std::max<std::size_t>(parameterSize, literal.size());
    parameters.push_back({.value = std::move(literal), .size = size});
  }
  return parameters;
}

DriverConnection::~DriverConnection() {
  // What fails is taken back when the connection goes.
  ignoringFailure([&] { rollback(); });
}

// A known statement is the system's own, so that its literals can be bound without reading it any
// further. Everything else is for the engine to understand or to refuse.
std::shared_ptr<Recordset> DriverConnection::Execute(std::string_view text) {
  requireWhole(text);
  if (auto shape = shapeOf(text)) {
    if (const KnownStatement* known = findStatement(session_.dialect(), shape->text)) {
      return kept(known->sql).execute(asParameters(shape->literals));
    }
    // The driver garbles these characters in a statement, but not in a parameter. Scripts come
    // here, and so does a pasted code whose quotation marks gave the statement another shape.
    if (session_.dialect().hasAsciiStatements && !isAscii(text)) {
      return PreparedStatement(session_, shape->text).execute(asParameters(shape->literals));
    }
  }
  return PreparedStatement::executeOnce(session_, text);
}

std::vector<Value> DriverConnection::askTogether(std::span<const std::string> queries) {
  JointQuery joint = jointQuery(session_.dialect(), queries);
  const std::shared_ptr<Recordset> row =
      joint.isKnown ? kept(joint.sql).execute(asParameters(joint.literals)) : Execute(joint.sql);
  std::vector<Value> answers;
  for (std::size_t i = 0; i < queries.size(); ++i) answers.push_back(row->field(i));
  return answers;
}

std::unique_ptr<Command> DriverConnection::newCommand() {
  // A command keeps its connection open, even if the caller lets go of it first.
  return std::make_unique<OdbcCommand>(shared_from_this());
}

// Within a transaction no call has a commit of its own.
std::unique_ptr<CallPair> DriverConnection::postBoth(const ProcedureCall& first,
                                                     const ProcedureCall& second) {
  const bool mayPair = sendsPairs_ && !isOnNode_ && !inTransaction_ && !session_.isLost();
  PreparedStatement* const statement = mayPair ? pairs_.find(first, second) : nullptr;
  if (statement == nullptr) return oneByOne(*this, first, second);
  PairOwner owner{
      [this](const ProcedureCall& call) { return runProcedure(*this, call, Purpose::Post); },
      [this](const ProcedureCall& call, const RuntimeError& error) {
        return changedNothing_ = isKnownToChangeNothing(call.name, call.parameters.size(), error);
      }};
  return pairOf(pairs_, *statement, session_, std::move(owner), first, second);
}

std::shared_ptr<Recordset> DriverConnection::run(CommandType type, std::string_view text,
                                                 const std::vector<CommandParameter>& parameters) {
  if (type == CommandType::Text) {
    requireWhole(text);
    return PreparedStatement(session_, text).execute(parameters);
  }
  session_.setSent(OdbcSession::Sent::Nothing);
  isTakenBack_ = false;
  try {
    return call(text, parameters);
  } catch (const RuntimeError& error) {
    changedNothing_ = isKnownToChangeNothing(text, parameters.size(), error);
    throw;
  }
}

std::shared_ptr<Recordset> DriverConnection::call(std::string_view name,
                                                  const std::vector<CommandParameter>& parameters) {
  if (session_.dialect().hasProcedureTable) return procedures_.call(name, parameters);
  if (isOnNode_ && !inTransaction_) return callOnNode(name, parameters);
  return procedure(name, parameters.size()).execute(parameters);
}

// A server that does not understand the question is no node.
void DriverConnection::joinCluster() {
  const ClusterStatements& cluster = session_.dialect().cluster;
  trapErrors([&] { isOnNode_ = answer(cluster.isNode) == "1"; }, [](const RuntimeError&) {});
  if (isOnNode_ && whyNotReady().empty()) session_.executeNative(cluster.opening);
}

/// What a later statement of the call met is thrown: in a transaction of ours nothing of it stays.
void raiseLateError(std::shared_ptr<Recordset> result) {
  while (result != nullptr) result = result->NextRecordset();
}

// The whole call runs in one transaction: one that met another node's change is made again, if the
// procedure itself has committed nothing.
std::shared_ptr<Recordset> DriverConnection::callOnNode(
    std::string_view name, const std::vector<CommandParameter>& parameters) {
  constexpr int mostTries = 10;
  const ClusterStatements& cluster = session_.dialect().cluster;
  for (int tries = 1;; ++tries) {
    bool met = false;
    session_.executeNative(cluster.begin);
    try {
      const auto results = procedure(name, parameters.size()).execute(parameters);
      raiseLateError(results);
      session_.executeNative(cluster.commit);
      return results;
    } catch (const RuntimeError&) {
      const std::vector<Diagnostic> said = session_.diagnostics();
      met = !said.empty() && said.front().state == "40001";
      isTakenBack_ = !session_.isLost() && takeBack();
      session_.setDiagnostics(said);
      if (!isTakenBack_ || !met || tries == mostTries) throw;
    }
    ++repeatedCalls_;
  }
}

/// Whether nothing of the call that failed is there for certain.
bool DriverConnection::takeBack() {
  const ClusterStatements& cluster = session_.dialect().cluster;
  bool nothing = false;
  trapErrors(
      [&] {
        session_.executeNative(cluster.rollback);
        session_.executeNative(cluster.commit);
        nothing = answer(cluster.committedNothing) == "1";
      },
      [this](const RuntimeError&) { session_.giveUp(); });
  return nothing;
}

bool DriverConnection::isRefused(std::string_view procedure, std::size_t parameters) {
  if (session_.dialect().hasProcedureTable) return !procedures_.takes(procedure, parameters);
  const auto found = refused_.find(procedure);
  if (found != refused_.end()) return found->second;
  return refused_.emplace(std::string(procedure), cannotHaveRun(session_, procedure, parameters))
      .first->second;
}

// Prepared when it is first called.
PreparedStatement& DriverConnection::procedure(std::string_view name, std::size_t parameters) {
  const std::string key = std::string(name).append("/").append(std::to_string(parameters));
  const auto found = kept_.find(key);
  if (found != kept_.end()) return found->second;
  const std::string text =
      callText(callBefore(session_, name), name, parameters, session_.dialect().callAfter);
  return kept_.try_emplace(key, session_, text).first->second;
}

// Whether the engine itself has refused a statement: the classes are those of the driver and its
// manager, and of the connection, which may have been lost when the engine was done.
bool isOfEngine(const std::vector<Diagnostic>& diagnostics) {
  if (diagnostics.empty()) return false;
  const std::string& state = diagnostics.front().state;
  const std::string_view others[] = {"HY", "IM", "01", "08", "24", "57P"};
  return state == "HYT00" || std::ranges::none_of(others, [&](std::string_view start) {
           return state.starts_with(start);
         });
}

bool DriverConnection::isSpent() const {
  const Dialect& dialect = session_.dialect();
  return std::ranges::any_of(session_.diagnostics(), [&](const Diagnostic& said) {
    return std::ranges::count(dialect.finalCodes, said.native & dialect.errorCodeBits) > 0;
  });
}

// An engine's error says nothing of what came before it within the call, unless its calls are
// atomic.
bool DriverConnection::isKnownToChangeNothing(std::string_view name, std::size_t parameters,
                                              const RuntimeError& error) const {
  if (session_.isLost()) return false;
  if (isTakenBack_) return true;
  if (session_.sent() == OdbcSession::Sent::Done) return false;
  if (session_.sent() == OdbcSession::Sent::Nothing) return true;
  if (hasAtomicCalls(session_, name)) return isOfEngine(session_.diagnostics());
  // These come from within a call that runs, or from a server that does not answer.
  const bool ran = error.is(ErrorNumber::IntegrityViolation) ||
                   error.is(ErrorNumber::DataTruncated) || error.is(ErrorNumber::ProviderTimeout);
  return !ran && cannotHaveRun(session_, name, parameters);
}

// Prepared when it is first asked for. If each record's query were prepared anew, an import of
// 10,000 documents would take 24 % longer.
PreparedStatement& DriverConnection::kept(std::string_view sql) {
  const auto found = kept_.find(sql);
  if (found != kept_.end()) return found->second;
  return kept_.try_emplace(std::string(sql), session_, sql).first->second;
}

// Refuses a statement of which the driver would see the beginning only.
void DriverConnection::requireWhole(std::string_view text) const {
  if (session_.dialect().endsTextAtNul && text.find('\0') != std::string_view::npos) {
    throw RuntimeError(ErrorNumber::CommandErrors, "A NUL character is in the statement.");
  }
}

void DriverConnection::setInTransaction(bool in) {
  // ODBC has no call that begins a transaction: it begins when nothing is committed by itself.
  const SQLUINTEGER mode = in ? SQL_AUTOCOMMIT_OFF : SQL_AUTOCOMMIT_ON;
  session_.check(SQLSetConnectAttrW(session_.handle(), SQL_ATTR_AUTOCOMMIT, integerArgument(mode),
                                    SQL_IS_UINTEGER));
  inTransaction_ = in;
}

void DriverConnection::beginTransaction() {
  if (inTransaction_) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  setInTransaction(true);
  const std::string_view mark = session_.dialect().transactionMark;
  if (!mark.empty()) session_.executeNative(mark);
}

void DriverConnection::endTransaction(SQLSMALLINT how) {
  if (!inTransaction_) return;
  // Before the mode is set back, which would commit what is open.
  session_.check(SQLEndTran(SQL_HANDLE_DBC, session_.handle(), how));
  inTransaction_ = false;
  // It has ended, whatever comes of this.
  trapErrors([this] { setInTransaction(false); }, [this](const auto&) { session_.giveUp(); });
}

bool DriverConnection::isInTransaction() {
  const std::string_view count = session_.dialect().transactionCount;
  if (!count.empty()) return toText(kept(count).execute({})->field(0)) != "0";
  const bool began = trapErrors([this] { session_.executeNative("BEGIN"); }, [](const auto&) {});
  if (began) session_.executeNative("ROLLBACK");
  return !began;
}

std::string DriverConnection::identity(bool mayStore) {
  const Dialect& dialect = session_.dialect();
  if (dialect.identityQuery.empty()) {
    const std::string server = session_.information(SQL_SERVER_NAME);
    const std::string database = session_.information(SQL_DATABASE_NAME);
    return server.empty() || database.empty() ? "" : server + "/" + database;
  }
  std::string id = storedIdentity();
  if (!id.empty() || !mayStore) return id;
  const auto store = [&] {
    for (const std::string_view statement : dialect.makeIdentity) session_.executeNative(statement);
  };
  trapErrors(store, [](const RuntimeError& error) {
    // One that is locked takes it later, and would pass for another database then. One that takes
    // nothing has no id: what writes to it will say why.
    if (error.is(ErrorNumber::ProviderTimeout)) throw RuntimeError(error);
  });
  return storedIdentity();
}

std::vector<std::string> DriverConnection::texts(std::string_view query) {
  std::vector<std::string> all;
  if (query.empty()) return all;
  const auto read = [&] {
    for (const auto rows = Execute(query); !rows->isEOF(); rows->MoveNext()) {
      all.push_back(toText(rows->field(0)));
    }
  };
  trapErrors(read, [](const RuntimeError&) {});
  return all;
}

DatabaseFacts DriverConnection::facts() {
  const Dialect& dialect = session_.dialect();
  const auto first = [this](std::string_view query) {
    const std::vector<std::string> all = texts(query);
    return all.empty() ? std::string() : all.front();
  };
  DatabaseFacts facts;
  facts.engine = session_.information(SQL_DBMS_NAME) + " " + session_.information(SQL_DBMS_VER);
  facts.encoding = first(dialect.encodingQuery);
  facts.noCount = first(dialect.noCountQuery);
  for (const std::string_view query : dialect.excessRights) {
    std::ranges::move(texts(query), std::back_inserter(facts.excessRights));
  }
  return facts;
}

std::vector<CatalogueParameter> DriverConnection::parametersOf(std::string_view procedure) {
  if (session_.dialect().hasProcedureTable) return {};
  return catalogueParameters(session_, procedure);
}

std::string DriverConnection::answer(std::string_view query) {
  if (query.empty()) return {};
  const auto row = Execute(query);
  return row->isEOF() ? "" : toText(row->field(0));
}

bool DriverConnection::hasEnded(std::string_view session, std::string_view place) {
  const std::string_view query = session_.dialect().hasEndedQuery;
  if (query.empty() || session.empty()) return false;
  const auto row =
      kept(query).execute({{.value = std::string(session)}, {.value = std::string(place)}});
  return !row->isEOF() && toText(row->field(0)) == "1";
}

LockHolders DriverConnection::lockHolders(std::string_view session) {
  LockHolders holders;
  for (const std::string_view query : session_.dialect().lockHolders) {
    const auto ask = [&] {
      for (const auto rows = kept(query).execute({{.value = std::string(session)}}); !rows->isEOF();
           rows->MoveNext()) {
        holders.names.push_back(toText(rows->field(0)));
      }
    };
    trapErrors(ask, [&](const RuntimeError&) {
      holders.missingRight = session_.dialect().lockHoldersRight;
    });
    if (!holders.names.empty()) break;
  }
  return holders;
}

std::string DriverConnection::storedIdentity() {
  std::string id;
  const auto read = [&] { id = answer(session_.dialect().identityQuery); };
  // Without the table there is no id.
  trapErrors(read, [](const RuntimeError& error) {
    if (!error.is(ErrorNumber::NoSuchTable)) throw RuntimeError(error);
  });
  return id;
}

// A connection string can neither quote nor contain characters beyond ASCII, but instead of a path
// the engine takes an address, in which every byte can be written with a percent sign.
std::string fileAddress(std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string address = "file:";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    address += '%';
    address += digits[byte >> 4];
    address += digits[byte & 15];
  }
  return address;
}

}  // namespace

std::shared_ptr<OwnConnection> openOdbc(std::string_view connectionString,
                                        const OdbcOptions& options) {
  return std::make_shared<DriverConnection>(connectionString, options);
}

std::string embeddedConnectionString(std::string_view file) {
  if (file.empty() || file.find('\0') != std::string_view::npos) {
    throw RuntimeError(ErrorNumber::BadFileNameOrNumber);
  }
  // Characters that a connection string and the engine both leave as they are.
  constexpr const char* plainSigns =
      "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz /\\:._-+=,()~@#!$&'";
  const std::string path = driverPath(file);
  // The engine takes a path that begins with "file:" as an address, and drivers trim blanks.
  const bool plain = path.find_first_not_of(plainSigns) == std::string::npos &&
                     !path.starts_with("file:") && path.front() != ' ' && path.back() != ' ';
  // NoCreat also for what opens it otherwise than openOdbc.
  return std::string("Driver=")
      .append(embeddedDriver())
      .append(";NoCreat=1;Database=")
      .append(plain ? path : fileAddress(path))
      .append(";");
}

}  // namespace velk
