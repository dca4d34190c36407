// A connection that knows every customer and fails where a test says so.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/errors.h"
#include "platform/odbc/memory_recordset.h"

namespace velk {

class ScriptedConnection final : public Connection,
                                 public std::enable_shared_from_this<ScriptedConnection> {
 public:
  /// Runs before each call with its number from 1 among queries and procedures alike; may throw.
  std::function<void(std::size_t call, std::string_view text)> onCall;
  /// The call whose second statement fails; 0: none.
  std::size_t lateFailure = 0;
  bool lost = false;
  std::size_t calls = 0;

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    std::vector<Value> cells{std::int32_t{1}};
    if (text.find("Setup") != std::string_view::npos) cells = {dateFromCivil({2008, 4, 1})};
    if (text.find("ColorSettings") != std::string_view::npos) cells.clear();
    return run(text, std::make_shared<MemoryRecordset>(1, cells));
  }
  std::unique_ptr<Command> newCommand() override;
  std::vector<Diagnostic> diagnostics() const override {
    return {{"HY000", 7, "first"}, {"01000", 0, "second"}};
  }
  bool isLost() const override { return lost; }

  std::shared_ptr<Recordset> run(std::string_view text, std::shared_ptr<MemoryRecordset> result) {
    ++calls;
    if (onCall) onCall(calls, text);
    if (calls == lateFailure) result->setNextError(RuntimeError(ErrorNumber::IntegrityViolation));
    return result;
  }
};

class ScriptedCommand final : public Command {
 public:
  explicit ScriptedCommand(std::shared_ptr<ScriptedConnection> connection)
      : connection_(std::move(connection)) {}
  void setCommandType(CommandType) override {}
  void setCommandText(std::string_view text) override { text_ = text; }
  void Append(std::string_view, std::int32_t, std::int32_t, std::int32_t) override {}
  void setValue(std::size_t, const Value&) override {}
  std::shared_ptr<Recordset> Execute(std::int32_t) override {
    return connection_->run(text_, std::make_shared<MemoryRecordset>());
  }

 private:
  std::shared_ptr<ScriptedConnection> connection_;
  std::string text_;
};

inline std::unique_ptr<Command> ScriptedConnection::newCommand() {
  return std::make_unique<ScriptedCommand>(shared_from_this());
}

}  // namespace velk
