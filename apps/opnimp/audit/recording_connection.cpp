#include "apps/opnimp/audit/recording_connection.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apps/opnimp/audit/pasted_value.h"
#include "base/errors.h"
#include "base/text.h"
#include "platform/forwarding_connection.h"
#include "platform/memory_recordset.h"

namespace velk {

namespace {

CallKind kindOf(CommandType type, Purpose purpose) {
  if (type != CommandType::StoredProcedure) return CallKind::Query;
  return purpose == Purpose::Ask ? CallKind::Check : CallKind::Procedure;
}

template <class Run>
auto timed(Recorder& recorder, std::size_t call, Run&& run) {
  struct Timer {
    Recorder& recorder;
    const std::size_t call;
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    ~Timer() { recorder.addTime(call, std::chrono::steady_clock::now() - start); }
  };
  const Timer timer{recorder, call};
  return run();
}

std::vector<Value> valuesOf(const ProcedureCall& call) {
  std::vector<Value> values;
  for (const ProcedureParameter& parameter : call.parameters) values.push_back(parameter.value);
  return values;
}

/// Runs one call, which passes the gate, and records how it ended. A later statement of it may have
/// failed without anybody asking: all results are asked for here, so that the account knows.
/// Connections that the runner uses read results at once and give them again.
template <class Run>
std::shared_ptr<Recordset> watched(Recorder& recorder, const Connection& connection,
                                   std::size_t call, Run&& execute) {
  std::shared_ptr<Recordset> first;
  try {
    first = timed(recorder, call, execute);
    recorder.setResult(call, CallResult::Ok);
    // From here on the first statement has taken effect, and only a later one can fail.
    for (auto result = first; result != nullptr;) result = result->NextRecordset();
  } catch (const RuntimeError& error) {
    recorder.callFailed(call, error, connection);
    // A late failure is raised where the import itself asks for that result, as without a recorder.
    if (first == nullptr) {
      recorder.checkTransaction(call);
      throw;
    }
  }
  recorder.checkTransaction(call);
  return first;
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
    // No text has more UTF-16 units than bytes, so that most texts need no conversion.
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
  if (kind != CallKind::Procedure || recorder_.mode() != Recorder::Mode::DryRun) {
    return watched(recorder_, *connection_, call,
                   [&] { return recorder_.gate().pass([&] { return inner_->Execute(options); }); });
  }
  // The driver never sees this call: what it would refuse by itself has to be refused here, and
  // what the database's catalogue knows.
  const auto refuse = [&](const RuntimeError& refusal) {
    recorder_.callRefused(call, refusal);
    throw RuntimeError(refusal);
  };
  if (exceedsSize()) refuse(RuntimeError(ErrorNumber::WrongArgumentType));
  if (recorder_.gate().pass([&] { return connection_->isRefused(text_, values_.size()); })) {
    refuse(RuntimeError(ErrorNumber::CommandErrors, "The database has no procedure " + text_ +
                                                        " with " + std::to_string(values_.size()) +
                                                        " parameters that this user may run"));
  }
  recorder_.setResult(call, CallResult::NotRun);
  return std::make_shared<MemoryRecordset>();  // no rows
}

/// Calls that are sent in one message are noted before either is sent: if no answer comes, both may
/// have taken effect.
class RecordingPair final : public CallPair {
 public:
  RecordingPair(Recorder& recorder, Connection& connection, const ProcedureCall& first,
                const ProcedureCall& second)
      : recorder_(recorder),
        connection_(connection),
        first_(first),
        second_(second),
        inner_(recorder.gate().pass([&] { return connection.postBoth(first, second); })) {}

  std::shared_ptr<Recordset> first() override {
    const std::size_t call = begin(first_);
    if (inner_->isSentTogether()) {
      sentCall_ = recorder_.noteCall(CallKind::Procedure, second_.name, valuesOf(second_));
    }
    return watched(recorder_, connection_, call, [&] {
      const Settled settled(*this);
      return recorder_.gate().pass([&] { return inner_->first(); });
    });
  }
  std::shared_ptr<Recordset> second() override {
    const std::size_t call = sentCall_ ? *sentCall_ : begin(second_);
    return watched(recorder_, connection_, call,
                   [&] { return recorder_.gate().pass([&] { return inner_->second(); }); });
  }
  bool isSentTogether() const override { return inner_->isSentTogether(); }

 private:
  /// A second call that did not get as far as being sent is noted when it is.
  class Settled {
   public:
    explicit Settled(RecordingPair& pair) : pair_(pair) {}
    ~Settled() {
      if (!pair_.sentCall_ || pair_.inner_->isSentTogether()) return;
      pair_.recorder_.withdrawCall();
      pair_.sentCall_.reset();
    }
    Settled(const Settled&) = delete;
    Settled& operator=(const Settled&) = delete;

   private:
    RecordingPair& pair_;
  };

  std::size_t begin(const ProcedureCall& call) {
    return recorder_.beginCall(CallKind::Procedure, call.name, valuesOf(call));
  }

  Recorder& recorder_;
  Connection& connection_;
  const ProcedureCall first_;
  const ProcedureCall second_;
  std::unique_ptr<CallPair> inner_;
  std::optional<std::size_t> sentCall_;  // the second one, if it was sent with the first
};

class RecordingConnection final : public ForwardingConnection {
 public:
  RecordingConnection(Recorder& recorder, std::shared_ptr<Connection> inner)
      : ForwardingConnection(std::move(inner)), recorder_(recorder) {}

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    const std::size_t call = recorder_.beginCall(CallKind::Query, text, {});
    if (pastesQuote(text)) refuse(call);
    return watched(recorder_, *inner(), call,
                   [&] { return recorder_.gate().pass([&] { return inner()->Execute(text); }); });
  }
  // Commands come from connections only: with this wrapper no call remains unseen.
  std::unique_ptr<Command> newCommand() override {
    return std::make_unique<RecordingCommand>(recorder_, inner());
  }
  std::unique_ptr<CallPair> postBoth(const ProcedureCall& first,
                                     const ProcedureCall& second) override {
    // Of a dry run each is recorded as a command of its own, and not run.
    if (recorder_.mode() == Recorder::Mode::DryRun) return oneByOne(*this, first, second);
    return std::make_unique<RecordingPair>(recorder_, *inner(), first, second);
  }

 private:
  /// As the engine answers a text that is not SQL, so that the import refuses the record as it
  /// always does.
  [[noreturn]] void refuse(std::size_t call) {
    const RuntimeError refusal(ErrorNumber::CommandErrors,
                               "The value has a quote in it, which would end it in the query: the "
                               "query is not sent");
    recorder_.callRefused(call, refusal);
    throw RuntimeError(refusal);
  }

  Recorder& recorder_;
  std::shared_ptr<Connection> inner_;
};

}  // namespace

std::shared_ptr<Connection> recorded(Recorder& recorder, std::shared_ptr<Connection> connection) {
  return std::make_shared<RecordingConnection>(recorder, std::move(connection));
}

}  // namespace velk
