#include "platform/odbc/odbc_connection.h"

#include <algorithm>
#include <utility>

#include "platform/odbc/driver_path.h"
#include "platform/odbc/statement_cache.h"
#include "platform/odbc/stored_procedures.h"

namespace velk {
namespace {

/// What a command is made of, kept by the connection between one command and the next.
struct CommandParts {
  std::string text;
  std::vector<CommandParameter> parameters;
};

class Open final : public OdbcConnection, public std::enable_shared_from_this<Open> {
 public:
  Open(std::string_view connectionString, const OdbcOptions& options)
      : session_(connectionString, options), statements_(session_), procedures_(session_) {}
  Open(const Open&) = delete;
  Open& operator=(const Open&) = delete;
  ~Open() override;

  std::shared_ptr<Recordset> Execute(std::string_view text) override;
  std::unique_ptr<Command> newCommand() override;
  std::vector<Diagnostic> diagnostics() const override { return session_.diagnostics(); }
  bool isLost() const override { return session_.isLost(); }
  void beginTransaction() override;
  void rollback() override;

  CommandParts takeParts() { return std::exchange(spareParts_, {}); }
  void giveBack(CommandParts parts) noexcept;

  std::shared_ptr<Recordset> executeText(std::string_view text,
                                         const std::vector<CommandParameter>& parameters);
  std::shared_ptr<Recordset> executeProcedure(std::string_view name,
                                              const std::vector<CommandParameter>& parameters);

 private:
  void setAutocommit(SQLUINTEGER mode);

  OdbcSession session_;
  StatementCache statements_;
  StoredProcedures procedures_;
  Translation translation_;
  CommandParts spareParts_;
  bool inTransaction_ = false;
};

// Texts are by far the most frequent: worth more than the general assignment.
void assign(Value& to, const Value& from) {
  if (const auto* text = std::get_if<std::string>(&from)) {
    to.emplace<std::string>(*text);
  } else {
    to = from;
  }
}

class OdbcCommand final : public Command {
 public:
  explicit OdbcCommand(std::shared_ptr<Open> connection)
      : connection_(std::move(connection)), parts_(connection_->takeParts()) {}
  OdbcCommand(const OdbcCommand&) = delete;
  OdbcCommand& operator=(const OdbcCommand&) = delete;
  ~OdbcCommand() override { connection_->giveBack(std::move(parts_)); }

  void setCommandType(CommandType type) override { type_ = type; }
  void setCommandText(std::string_view text) override { parts_.text = text; }
  void Append(std::string_view, std::int32_t type, std::int32_t direction, std::int32_t) override {
    parts_.parameters.push_back({type, direction, Null{}});
  }
  void setValue(std::size_t position, const Value& value) override {
    if (position >= parts_.parameters.size()) throw RuntimeError(ErrorNumber::ItemNotFound);
    assign(parts_.parameters[position].value, value);
  }
  std::shared_ptr<Recordset> Execute(std::int32_t) override;

 private:
  std::shared_ptr<Open> connection_;
  CommandType type_ = CommandType::Text;
  CommandParts parts_;
};

void Open::giveBack(CommandParts parts) noexcept {
  parts.text.clear();
  parts.parameters.clear();
  spareParts_ = std::move(parts);
}

std::shared_ptr<Recordset> OdbcCommand::Execute(std::int32_t) {
  for (const CommandParameter& parameter : parts_.parameters) {
    if (parameter.direction != inputParameter) throw RuntimeError(ErrorNumber::WrongArgumentType);
  }
  if (type_ == CommandType::StoredProcedure) {
    return connection_->executeProcedure(parts_.text, parts_.parameters);
  }
  return connection_->executeText(parts_.text, parts_.parameters);
}

// "{call name(?, ?)}", the interface's own way to call a procedure.
std::string callText(std::string_view name, std::size_t parameterCount) {
  std::string text = "{call ";
  text += name;
  for (std::size_t i = 0; i < parameterCount; ++i) text += i == 0 ? "(?" : ", ?";
  text += parameterCount == 0 ? "}" : ")}";
  return text;
}

Open::~Open() {
  try {
    rollback();
  } catch (const RuntimeError&) {
    // the engine takes it back when the connection goes
  }
}

std::shared_ptr<Recordset> Open::Execute(std::string_view text) {
  session_.dialect().translateQuery(text, translation_);
  const auto runWith = [&](PreparedStatement& statement) {
    for (std::size_t i = 0; i < translation_.literalCount; ++i) {
      statement.parameter(i, static_cast<std::int32_t>(DataType::VarChar))
          .setText(translation_.literals[i]);
    }
    return statement.execute(translation_.literalCount);
  };
  if (translation_.reusable) return runWith(statements_.get(translation_.sql));
  PreparedStatement once(session_, translation_.sql);
  return runWith(once);
}

std::unique_ptr<Command> Open::newCommand() {
  return std::make_unique<OdbcCommand>(shared_from_this());
}

std::shared_ptr<Recordset> run(PreparedStatement& statement,
                               const std::vector<CommandParameter>& parameters) {
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    statement.setParameter(i, parameters[i].type, parameters[i].value);
  }
  return statement.execute(parameters.size());
}

std::shared_ptr<Recordset> Open::executeText(std::string_view text,
                                             const std::vector<CommandParameter>& parameters) {
  return run(statements_.get(session_.dialect().translateCommand(text)), parameters);
}

std::shared_ptr<Recordset> Open::executeProcedure(std::string_view name,
                                                  const std::vector<CommandParameter>& parameters) {
  if (session_.dialect().hasProcedureTable()) return procedures_.call(name, parameters);
  return run(statements_.get(callText(name, parameters.size())), parameters);
}

void Open::setAutocommit(SQLUINTEGER mode) {
  session_.check(SQLSetConnectAttrW(session_.handle(), SQL_ATTR_AUTOCOMMIT, integerArgument(mode),
                                    SQL_IS_UINTEGER),
                 SQL_HANDLE_DBC, session_.handle());
}

void Open::beginTransaction() {
  if (inTransaction_) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  setAutocommit(SQL_AUTOCOMMIT_OFF);
  inTransaction_ = true;
}

void Open::rollback() {
  if (!inTransaction_) return;
  session_.check(SQLEndTran(SQL_HANDLE_DBC, session_.handle(), SQL_ROLLBACK), SQL_HANDLE_DBC,
                 session_.handle());
  inTransaction_ = false;
  setAutocommit(SQL_AUTOCOMMIT_ON);
}

bool isPlainInPath(char c) {
  constexpr std::string_view signs = " /\\:._-+=,()~@#!$&'";
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         signs.find(c) != std::string_view::npos;
}

// Connection strings know neither a way to quote nor other characters than ASCII, but the engine
// takes an address as well, where every byte can be written with a percent sign.
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

std::shared_ptr<OdbcConnection> openOdbc(std::string_view connectionString,
                                         const OdbcOptions& options) {
  return std::make_shared<Open>(connectionString, options);
}

std::string embeddedConnectionString(std::string_view file) {
  if (file.empty() || file.find('\0') != std::string_view::npos) {
    throw RuntimeError(ErrorNumber::BadFileNameOrNumber);
  }
  const std::string path = driverPath(file);
  const bool plain = std::all_of(path.begin(), path.end(), isPlainInPath) &&
                     !path.starts_with("file:") && path.front() != ' ' && path.back() != ' ';
  return std::string("Driver=SQLite3;NoCreat=1;Database=")
      .append(plain ? path : fileAddress(path))
      .append(";");
}

}  // namespace velk
