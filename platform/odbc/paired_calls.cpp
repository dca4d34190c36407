#include "platform/odbc/paired_calls.h"

#include <array>
#include <random>
#include <span>
#include <utility>

#include "base/errors.h"
#include "platform/odbc/call_text.h"
#include "platform/odbc/procedure_catalogue.h"

namespace velk {
namespace {

std::string keyOf(const ProcedureCall& call) {
  return std::string(call.name).append("/").append(std::to_string(call.parameters.size()));
}

/// The text with its marks replaced in their order.
std::string filled(std::string_view text, std::span<const std::string> values) {
  std::string result;
  for (const char c : text) {
    if (c != '?') {
      result += c;
    } else {
      result += values.front();
      values = values.subspan(1);
    }
  }
  return result;
}

/// The text with its marks replaced by "$1", "$2" and so on.
std::string numbered(std::string_view text) {
  std::string result;
  int number = 0;
  for (const char c : text) {
    c == '?' ? result.append("$").append(std::to_string(++number)) : result.append(1, c);
  }
  return result;
}

std::string asOne(const PairedCallsDialect& dialect, std::string_view first,
                  std::string_view second) {
  std::string text(dialect.before);
  return text.append(first).append(dialect.between).append(second).append(dialect.after);
}

void addTo(std::vector<CommandParameter>& parameters, const ProcedureCall& call) {
  for (const auto& [value, type] : call.parameters) {
    parameters.push_back({.type = static_cast<std::int32_t>(type), .value = value});
  }
}

std::shared_ptr<Recordset> noRows() {
  return std::make_shared<MemoryRecordset>();
}

/// 128 random bits as text.
std::string madeSecret() {
  std::random_device random;
  std::string text;
  for (int i = 0; i < 4; ++i) text.append(std::to_string(random())).append(".");
  return text;
}

/// What the mark's own result says of a transaction that the first call has left open: "0" or "1";
/// empty for any other result.
std::string openAtMark(const Recordset& result, const std::string& mark) {
  const auto& rows = dynamic_cast<const MemoryRecordset&>(result);
  if (rows.State() != stateOpen || rows.isEOF() || rows.columns() != 2) return {};
  const std::string open = toText(rows.field(1));
  return toText(rows.field(0)) == mark && (open == "0" || open == "1") ? open : "";
}

class SentPair final : public CallPair {
 public:
  SentPair(PairedCalls& calls, PreparedStatement& statement, OdbcSession& session, PairOwner owner,
           const ProcedureCall& first, const ProcedureCall& second)
      : calls_(calls),
        statement_(statement),
        session_(session),
        owner_(std::move(owner)),
        first_(first),
        second_(second) {
    end_.isSecondSent = true;  // it will be
  }

  std::shared_ptr<Recordset> first() override {
    auto end = calls_.send(statement_, first_, second_);
    end_ = end ? std::move(*end) : PairedCalls::End{};
    if (!end) return owner_.run(first_);
    if (!end_.firstError) return end_.first;
    fail(first_, *end_.firstError);
    throw RuntimeError(*end_.firstError);
  }

  std::shared_ptr<Recordset> second() override {
    if (!end_.isSecondSent) return owner_.run(second_);
    if (!end_.secondError) return end_.second;
    const bool nothing = fail(second_, *end_.secondError);
    if (nothing && end_.wasSecondShort && !session_.wasCancelled()) return owner_.run(second_);
    throw RuntimeError(*end_.secondError);
  }

  bool isSentTogether() const override { return end_.isSecondSent; }

 private:
  // The statement as a whole may have begun to answer, the call that failed has not.
  bool fail(const ProcedureCall& call, const RuntimeError& error) {
    session_.setSent(OdbcSession::Sent::Asked);
    return owner_.noteFailure(call, error);
  }

  PairedCalls& calls_;
  PreparedStatement& statement_;
  OdbcSession& session_;
  const PairOwner owner_;
  const ProcedureCall first_;
  const ProcedureCall second_;
  PairedCalls::End end_;
};

}  // namespace

PairedCalls::PairedCalls(OdbcSession& session) : session_(session), secret_(madeSecret()) {}

PreparedStatement* PairedCalls::find(const ProcedureCall& first, const ProcedureCall& second) {
  if (session_.dialect().pairedCalls == nullptr) return nullptr;
  const auto [found, isNew] = statements_.try_emplace(keyOf(first) + " " + keyOf(second));
  std::optional<PreparedStatement>& statement = found->second;
  if (isNew) {
    // An engine of another version, a right that is missing: the calls themselves need none of it.
    trapErrors(
        [&] {
          if (const auto text = make(first, second)) statement.emplace(session_, *text);
        },
        [](const RuntimeError&) {});
  }
  return statement ? &*statement : nullptr;
}

std::optional<std::string> PairedCalls::make(const ProcedureCall& first,
                                             const ProcedureCall& second) {
  const Dialect& dialect = session_.dialect();
  const OnlyAsking asking(session_);
  if (!dialect.pairedCalls->signatureQuery.empty()) {
    const std::string procedure = makeProcedure(first, second);
    if (procedure.empty()) return std::nullopt;
    return callText("CALL ", procedure, first.parameters.size() + 1 + second.parameters.size(), {});
  }
  const auto text = [&](const ProcedureCall& call) {
    return callText(callBefore(session_, call.name), call.name, call.parameters.size(),
                    dialect.callAfter);
  };
  return asOne(*dialect.pairedCalls, text(first), text(second));
}

// Its parameters are of the same types as those of the procedures, so that a value that one of them
// takes is taken here.
std::string PairedCalls::makeProcedure(const ProcedureCall& first, const ProcedureCall& second) {
  const PairedCallsDialect& dialect = *session_.dialect().pairedCalls;
  std::array<std::string, 2> calls;
  std::array<std::string, 2> types;
  for (std::size_t i = 0; i < 2; ++i) {
    const ProcedureCall& call = i == 0 ? first : second;
    const auto signature =
        PreparedStatement::executeOnce(session_, withProcedure(dialect.signatureQuery, call.name));
    const std::string count = std::to_string(call.parameters.size());
    if (signature->isEOF() || toText(signature->field(0)) != count) return {};
    calls.at(i) = callText(toText(signature->field(1)), call.name, call.parameters.size(), {});
    types.at(i) = toText(signature->field(2));
    signature->MoveNext();
    if (!signature->isEOF()) return {};
  }
  std::string name = std::string(dialect.procedure) + std::to_string(statements_.size());
  const std::array making{name, types[0] + ", " + std::string(dialect.markType) + ", " + types[1],
                          numbered(asOne(dialect, calls[0], calls[1]))};
  session_.executeNative(filled(dialect.makeProcedure, making));
  return name;
}

std::optional<PairedCalls::End> PairedCalls::send(PreparedStatement& statement,
                                                  const ProcedureCall& first,
                                                  const ProcedureCall& second) {
  const std::string mark = "opnimp " + secret_ + std::to_string(++sent_);
  std::vector<CommandParameter> parameters;
  addTo(parameters, first);
  parameters.push_back({.value = mark});
  addTo(parameters, second);
  session_.setSent(OdbcSession::Sent::Nothing);
  try {
    return endOf(statement.execute(parameters), mark);
  } catch (const RuntimeError& error) {
    if (session_.sent() == OdbcSession::Sent::Nothing) return std::nullopt;
    return endOf(error, mark);
  }
}

// The mark, where it is a result, stands between those of the two calls.
PairedCalls::End PairedCalls::endOf(const std::shared_ptr<MemoryRecordset>& answer,
                                    const std::string& mark) const {
  End end{.first = answer, .isSecondSent = true, .second = noRows()};
  if (!session_.dialect().pairedCalls->reachedQuery.empty()) return end;
  std::shared_ptr<Recordset> before;
  std::shared_ptr<Recordset> result = answer;
  std::string open;
  try {
    while (result != nullptr && (open = openAtMark(*result, mark)).empty()) {
      before = std::exchange(result, result->NextRecordset());
    }
  } catch (const RuntimeError&) {
    // The error is the first one's, which raises it where it is asked for that result.
    end.isSecondSent = session_.isLost();
    return end;
  }
  if (result == nullptr) {
    // Which of the two have run is anybody's guess.
    end.firstError = end.secondError =
        RuntimeError(ErrorNumber::ProviderFailure, "The answer to both calls is not understood.");
    return end;
  }
  if (before == nullptr)
    end.first = noRows();
  else
    dynamic_cast<MemoryRecordset&>(*before).setNext(nullptr);
  trapErrors([&] { end.second = result->NextRecordset(); },
             [&](const RuntimeError& error) { end.secondError = error; });
  if (end.second == nullptr) end.second = noRows();
  // In a transaction that the first one has left open the second one was not run.
  end.isSecondSent = open == "0";
  return end;
}

PairedCalls::End PairedCalls::endOf(const RuntimeError& error, const std::string& mark) {
  const auto first = session_.isLost() ? std::nullopt : reachedAfter(mark);
  if (!first) return {.firstError = error, .isSecondSent = session_.isLost()};
  const auto all = std::chrono::seconds(session_.options().commandTimeoutSeconds);
  const bool wasShort =
      session_.reportedState() == session_.dialect().pairedCalls->timeUsedUp && *first * 10 >= all;
  return {
      .first = noRows(), .isSecondSent = true, .secondError = error, .wasSecondShort = wasShort};
}

/// How long the first call took; empty if it has not ended well.
std::optional<std::chrono::milliseconds> PairedCalls::reachedAfter(const std::string& mark) {
  const std::string_view query = session_.dialect().pairedCalls->reachedQuery;
  if (query.empty()) return std::nullopt;
  std::optional<std::chrono::milliseconds> after;
  trapErrors(
      [&] {
        const auto reached = PreparedStatement::executeOnce(session_, query);
        if (toText(reached->field(0)) != mark) return;
        after = std::chrono::milliseconds(static_cast<long>(toDouble(reached->field(1))));
      },
      // Without an answer nobody knows where the connection stands.
      [&](const RuntimeError&) { session_.giveUp(); });
  return after;
}

std::unique_ptr<CallPair> pairOf(PairedCalls& calls, PreparedStatement& statement,
                                 OdbcSession& session, PairOwner owner, const ProcedureCall& first,
                                 const ProcedureCall& second) {
  return std::make_unique<SentPair>(calls, statement, session, std::move(owner), first, second);
}

}  // namespace velk
