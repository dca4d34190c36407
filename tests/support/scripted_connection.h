// A connection that knows every customer and fails where a test says so.
#pragma once

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "platform/memory_recordset.h"

namespace velk {

class ScriptedConnection final : public Connection,
                                 public std::enable_shared_from_this<ScriptedConnection> {
 public:
  /// A letter for each call, queries and procedures alike: x refused, t timed out, m out of memory,
  /// l its second statement is refused; X and L: so, and the connection is lost. All others work.
  std::string fates;
  std::size_t calls = 0;

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    std::vector<Value> cells{std::int32_t{1}};
    if (text.find("Setup") != std::string_view::npos) cells = {dateFromCivil({2008, 4, 1})};
    if (text.find("ColorSettings") != std::string_view::npos) cells.clear();
    return run(std::make_shared<MemoryRecordset>(1, cells));
  }
  std::unique_ptr<Command> newCommand() override;
  std::vector<Diagnostic> diagnostics() const override {
    return {{"HY000", 7, "first"}, {"01000", 0, "second"}};
  }
  bool isLost() const override { return fate_ == 'X' || fate_ == 'L'; }

  std::shared_ptr<Recordset> run(std::shared_ptr<MemoryRecordset> result) {
    fate_ = calls < fates.size() ? fates[calls] : ' ';
    ++calls;
    const RuntimeError refused(ErrorNumber::IntegrityViolation, "refused");
    if (fate_ == 'x' || fate_ == 'X') throw RuntimeError(refused);
    if (fate_ == 't') throw RuntimeError(ErrorNumber::ProviderTimeout);
    if (fate_ == 'm') throw std::bad_alloc();
    if (fate_ == 'l' || fate_ == 'L') result->setNextError(refused);
    return result;
  }

 private:
  char fate_ = ' ';
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
    const bool check = text_.find("_check") != text_.npos || text_.find("_Check") != text_.npos;
    const std::vector<Value> yes{std::int32_t{1}};
    return connection_->run(check ? std::make_shared<MemoryRecordset>(1, yes)
                                  : std::make_shared<MemoryRecordset>());
  }

 private:
  std::shared_ptr<ScriptedConnection> connection_;
  std::string text_;
};

inline std::unique_ptr<Command> ScriptedConnection::newCommand() {
  return std::make_unique<ScriptedCommand>(shared_from_this());
}

}  // namespace velk
