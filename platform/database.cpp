#include "platform/database.h"

#include "base/errors.h"

namespace velk {

namespace {

class ClosedCommand final : public Command {
 public:
  // A command can be filled in on a closed connection; only running it is an error.
  void setCommandType(CommandType) override {}
  void setCommandText(std::string_view) override {}
  void Append(std::string_view, std::int32_t, std::int32_t, std::int32_t) override {}
  void setValue(std::size_t, const Value&) override {}
  std::shared_ptr<Recordset> Execute(std::int32_t) override {
    throw RuntimeError(ErrorNumber::ConnectionInvalid);
  }
};

class OneByOne final : public CallPair {
 public:
  OneByOne(Connection& connection, const ProcedureCall& first, const ProcedureCall& second)
      : connection_(connection), first_(first), second_(second) {}

  std::shared_ptr<Recordset> first() override {
    return runProcedure(connection_, first_, Purpose::Post);
  }
  std::shared_ptr<Recordset> second() override {
    return runProcedure(connection_, second_, Purpose::Post);
  }

 private:
  Connection& connection_;
  const ProcedureCall first_;
  const ProcedureCall second_;
};

}  // namespace

std::unique_ptr<CallPair> Connection::postBoth(const ProcedureCall& first,
                                               const ProcedureCall& second) {
  return oneByOne(*this, first, second);
}

std::unique_ptr<CallPair> oneByOne(Connection& connection, const ProcedureCall& first,
                                   const ProcedureCall& second) {
  return std::make_unique<OneByOne>(connection, first, second);
}

std::vector<Value> OwnConnection::askTogether(std::span<const std::string> queries) {
  std::vector<Value> answers;
  for (const std::string& query : queries) answers.push_back(Execute(query)->field(0));
  return answers;
}

std::shared_ptr<Recordset> runProcedure(Connection& connection, const ProcedureCall& call,
                                        Purpose purpose) {
  const std::unique_ptr<Command> command = connection.newCommand();
  command->setPurpose(purpose);
  command->setCommandType(CommandType::StoredProcedure);
  for (std::size_t i = 0; i < call.parameters.size(); ++i) {
    const auto& [value, type] = call.parameters[i];
    // The number is the value's place in the flat list of values and types: Param0, Param2, ...
    command->Append("Param" + std::to_string(2 * i), static_cast<std::int32_t>(type),
                    inputParameter, parameterSize);
    command->setValue(i, value);
  }
  command->setCommandText(call.name);
  return command->Execute(defaultOptions);
}

std::shared_ptr<Recordset> ClosedConnection::Execute(std::string_view) {
  throw RuntimeError(ErrorNumber::ConnectionInvalid);
}

std::unique_ptr<Command> ClosedConnection::newCommand() {
  return std::make_unique<ClosedCommand>();
}

}  // namespace velk
