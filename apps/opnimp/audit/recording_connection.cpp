#include "apps/opnimp/audit/recording_connection.h"

#include <optional>
#include <string>
#include <utility>

#include "base/errors.h"
#include "base/text.h"
#include "platform/memory_recordset.h"

namespace velk {

namespace {

CallKind kindOf(CommandType type, Purpose purpose) {
  if (type != CommandType::StoredProcedure) return CallKind::Query;
  return purpose == Purpose::Ask ? CallKind::Check : CallKind::Procedure;
}

/// The results of a call, fetched when it ran, given one by one as the caller asks for them.
class FetchedResults final : public Recordset {
 public:
  explicit FetchedResults(std::shared_ptr<Recordset> current) : current_(std::move(current)) {}

  void add(std::shared_ptr<FetchedResults> next) { next_ = std::move(next); }
  void addError(const RuntimeError& error) { error_ = error; }

  std::int32_t State() const override { return current_->State(); }
  bool isEOF() const override { return current_->isEOF(); }
  bool isBOF() const override { return current_->isBOF(); }
  void MoveNext() override { current_->MoveNext(); }
  Value field(std::size_t position) const override { return current_->field(position); }
  void Close() override { current_->Close(); }
  std::shared_ptr<Recordset> NextRecordset() override {
    if (error_) throw RuntimeError(*error_);
    return next_;
  }

 private:
  std::shared_ptr<Recordset> current_;
  std::shared_ptr<FetchedResults> next_;
  std::optional<RuntimeError> error_;
};

/// Runs one call under the recorder's eyes.
class WatchedCall {
 public:
  WatchedCall(Recorder& recorder, Connection& connection, std::size_t call)
      : recorder_(recorder), connection_(connection), call_(call) {}

  template <class Run>
  std::shared_ptr<Recordset> run(Run&& execute) {
    std::shared_ptr<Recordset> first;
    try {
      first = execute();
    } catch (const RuntimeError& error) {
      recorder_.callFailed(call_, CallResult::Failed, error, connection_);
      throw;
    }
    recorder_.setResult(call_, CallResult::Ok);
    return first;
  }

  /// A later statement of the call may have failed without anybody asking: its results are fetched
  /// here, so that the account knows.
  std::shared_ptr<Recordset> fetchAll(std::shared_ptr<Recordset> result) {
    auto first = std::make_shared<FetchedResults>(result);
    auto last = first;
    try {
      while ((result = result->NextRecordset()) != nullptr) {
        auto next = std::make_shared<FetchedResults>(result);
        last->add(next);
        last = std::move(next);
      }
    } catch (const RuntimeError& error) {
      recorder_.callFailed(call_, CallResult::FailedLate, error, connection_);
      last->addError(error);
    }
    return first;
  }

 private:
  Recorder& recorder_;
  Connection& connection_;
  std::size_t call_;
};

/// What a call meets that the driver would not take.
std::shared_ptr<Recordset> refusal() {
  throw RuntimeError(ErrorNumber::WrongArgumentType);
}

class RecordingCommand final : public Command {
 public:
  RecordingCommand(Recorder& recorder, std::shared_ptr<Connection> connection)
      : recorder_(recorder),
        connection_(std::move(connection)),
        inner_(connection_->newCommand()) {}

  void setCommandType(CommandType type) override {
    type_ = type;
    inner_->setCommandType(type);
  }
  void setCommandText(std::string_view text) override {
    text_ = text;
    inner_->setCommandText(text);
  }
  void setPurpose(Purpose purpose) override {
    purpose_ = purpose;
    inner_->setPurpose(purpose);
  }
  void Append(std::string_view name, std::int32_t type, std::int32_t direction,
              std::int32_t size) override {
    inner_->Append(name, type, direction, size);
    values_.emplace_back();
    sizes_.push_back(static_cast<std::size_t>(size));
  }
  void setValue(std::size_t position, const Value& value) override {
    inner_->setValue(position, value);
    values_.at(position) = value;
  }
  std::shared_ptr<Recordset> Execute(std::int32_t options) override;

 private:
  /// Whether the driver would refuse a text for its length, as it does when the call is run.
  bool exceedsSize() const;

  Recorder& recorder_;
  std::shared_ptr<Connection> connection_;
  std::unique_ptr<Command> inner_;
  CommandType type_ = CommandType::Text;
  Purpose purpose_ = Purpose::Post;
  std::string text_;
  std::vector<Value> values_;
  std::vector<std::size_t> sizes_;
};

bool RecordingCommand::exceedsSize() const {
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const auto* text = std::get_if<std::string>(&values_[i]);
    if (text != nullptr && text->size() > sizes_[i] && toUtf16(*text).size() > sizes_[i]) {
      return true;
    }
  }
  return false;
}

std::shared_ptr<Recordset> RecordingCommand::Execute(std::int32_t options) {
  const CallKind kind = kindOf(type_, purpose_);
  const std::size_t call = recorder_.beginCall(kind, text_, values_);
  WatchedCall watched(recorder_, *connection_, call);
  if (kind == CallKind::Procedure && recorder_.mode() == Recorder::Mode::DryRun) {
    if (exceedsSize()) watched.run(refusal);
    recorder_.setResult(call, CallResult::NotRun);
    return std::make_shared<MemoryRecordset>();  // no rows
  }
  return watched.fetchAll(watched.run([&] { return inner_->Execute(options); }));
}

class RecordingConnection final : public Connection {
 public:
  RecordingConnection(Recorder& recorder, std::shared_ptr<Connection> inner)
      : recorder_(recorder), inner_(std::move(inner)) {}

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    const std::size_t call = recorder_.beginCall(CallKind::Query, text, {});
    WatchedCall watched(recorder_, *inner_, call);
    return watched.fetchAll(watched.run([&] { return inner_->Execute(text); }));
  }
  std::unique_ptr<Command> newCommand() override {
    return std::make_unique<RecordingCommand>(recorder_, inner_);
  }
  std::vector<Diagnostic> diagnostics() const override { return inner_->diagnostics(); }
  bool isLost() const override { return inner_->isLost(); }

 private:
  Recorder& recorder_;
  std::shared_ptr<Connection> inner_;
};

}  // namespace

std::shared_ptr<Connection> recorded(Recorder& recorder, std::shared_ptr<Connection> connection) {
  return std::make_shared<RecordingConnection>(recorder, std::move(connection));
}

}  // namespace velk
