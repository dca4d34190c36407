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

}  // namespace

std::shared_ptr<Recordset> ClosedConnection::Execute(std::string_view) {
  throw RuntimeError(ErrorNumber::ConnectionInvalid);
}

std::unique_ptr<Command> ClosedConnection::newCommand() {
  return std::make_unique<ClosedCommand>();
}

}  // namespace velk
