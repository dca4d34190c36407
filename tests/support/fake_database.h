// A connection that records every statement and procedure call and answers from a script.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "platform/database.h"

namespace velk {

using FakeRows = std::vector<std::vector<Value>>;
/// The results of one call in their order; one without a value is closed.
using FakeResults = std::vector<std::optional<FakeRows>>;

struct FakeParameter {
  std::string name;
  std::int32_t type = 0, direction = 0, size = 0;
  Value value;
};

struct FakeCall {
  CommandType kind = CommandType::Text;
  std::string text;  ///< the statement or the procedure's name
  std::vector<FakeParameter> parameters;
  std::int32_t options = defaultOptions;
  Purpose purpose = Purpose::Post;
};

/// A call as one line: its name, then type and value of each parameter.
inline std::string described(const FakeCall& call) {
  std::string text = call.text;
  for (const FakeParameter& p : call.parameters) {
    text += "; " + std::to_string(p.type) + " " + toText(p.value);
  }
  return text;
}

class FakeConnection final : public OwnConnection {
 public:
  std::vector<FakeCall> calls;
  std::function<void(const FakeCall&)> onCall;  ///< runs before the call is answered
  int closed = 0;                               ///< record sets closed
  int nextResults = 0;                          ///< calls of NextRecordset
  int liveCommands = 0;                         ///< commands not released
  std::optional<RuntimeError> nextError;        ///< NextRecordset raises it
  std::vector<Diagnostic> said;                 ///< by the driver about failures
  bool lost = false;
  bool nothingChanged = false;                ///< by a call that fails
  std::string notReady, confirmed, database;  ///< whyNotReady, history and identity

  /// The procedure calls so far, described.
  std::vector<std::string> procedureCalls() const {
    std::vector<std::string> found;
    for (const FakeCall& call : calls) {
      if (call.kind == CommandType::StoredProcedure) found.push_back(described(call));
    }
    return found;
  }

  /// What calls get whose text starts so (the longest start counts); all others one closed result.
  std::map<std::string, FakeResults> answers;
  void answerRows(const std::string& start, FakeRows rows) { answers[start] = {std::move(rows)}; }
  /// Calls whose text starts so raise an error.
  void fail(const std::string& start, ErrorNumber number, std::string description) {
    failures_.insert_or_assign(start, RuntimeError(number, std::move(description)));
  }

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    return run({.text = std::string(text), .parameters = {}});
  }
  std::unique_ptr<Command> newCommand() override { return std::make_unique<FakeCommand>(*this); }
  std::vector<Diagnostic> diagnostics() const override { return said; }
  bool isLost() const override { return lost; }
  bool changedNothing() const override { return nothingChanged; }
  bool ended = true;  ///< hasEnded
  bool hasEnded(std::string_view /*session*/, std::string_view /*place*/) override { return ended; }
  std::string whyNotReady() override { return notReady; }
  std::string history() override { return confirmed; }
  std::string identity(bool /*mayStore*/) override { return database; }

 private:
  struct FakeRecordset final : Recordset {
    FakeRecordset(FakeConnection& c, FakeResults r) : connection(c), results(std::move(r)) {}
    std::int32_t State() const override { return results[0] ? stateOpen : stateClosed; }
    bool isEOF() const override { return at >= rows().size(); }
    bool isBOF() const override { return rows().empty(); }
    void MoveNext() override { ++at; }
    Value field(std::size_t position) const override {
      if (isEOF()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
      if (position >= rows()[at].size()) throw RuntimeError(ErrorNumber::ItemNotFound);
      return rows()[at][position];
    }
    std::shared_ptr<Recordset> NextRecordset() override {
      ++connection.nextResults;
      if (connection.nextError) throw RuntimeError(*connection.nextError);
      if (results.size() == 1) return nullptr;
      return std::make_shared<FakeRecordset>(connection,
                                             FakeResults(results.begin() + 1, results.end()));
    }
    void Close() override {
      rows();
      results[0].reset();
      ++connection.closed;
    }
    const FakeRows& rows() const {
      if (!results[0]) throw RuntimeError(ErrorNumber::ObjectClosed);
      return *results[0];
    }
    FakeConnection& connection;
    FakeResults results;
    std::size_t at = 0;
  };

  struct FakeCommand final : Command {
    explicit FakeCommand(FakeConnection& c) : connection(c) { ++connection.liveCommands; }
    ~FakeCommand() override { --connection.liveCommands; }
    void setCommandType(CommandType type) override { call.kind = type; }
    void setCommandText(std::string_view text) override { call.text = text; }
    void setPurpose(Purpose purpose) override { call.purpose = purpose; }
    void Append(std::string_view name, std::int32_t type, std::int32_t direction,
                std::int32_t size) override {
      call.parameters.push_back({std::string(name), type, direction, size, Null()});
    }
    void setValue(std::size_t position, const Value& value) override {
      call.parameters.at(position).value = value;
    }
    std::shared_ptr<Recordset> Execute(std::int32_t options) override {
      call.options = options;
      return connection.run(call);
    }
    FakeConnection& connection;
    FakeCall call;
  };

  template <class Map>
  static const typename Map::mapped_type* find(const Map& map, const std::string& text) {
    const auto found = std::find_if(
        map.rbegin(), map.rend(), [&](const auto& entry) { return text.starts_with(entry.first); });
    return found == map.rend() ? nullptr : &found->second;
  }

  std::shared_ptr<Recordset> run(const FakeCall& call) {
    calls.push_back(call);
    if (onCall) onCall(call);
    if (const RuntimeError* error = find(failures_, call.text)) throw *error;
    const FakeResults* results = find(answers, call.text);
    return std::make_shared<FakeRecordset>(*this, results ? *results : FakeResults{{}});
  }

  std::map<std::string, RuntimeError> failures_;
};

}  // namespace velk
