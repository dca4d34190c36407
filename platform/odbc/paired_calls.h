// Two calls of procedures sent as one statement, where the engine's dialect says how.
//
// What they do is what they do one after the other: each keeps its own commit, the second runs
// although the first has failed or left a transaction open (by itself then), and each raises its
// own error. Values are parameters of the statement, so that no text of a record can become a part
// of it.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/odbc/prepared_statement.h"

namespace velk {

class PairedCalls {
 public:
  explicit PairedCalls(OdbcSession& session);

  /// Null if these two cannot be sent so: the dialect does not know how, or the engine refuses it.
  /// The statement is made with the first two of their names.
  PreparedStatement* find(const ProcedureCall& first, const ProcedureCall& second);

  /// How far the two came.
  struct End {
    std::shared_ptr<Recordset> first{};  ///< its answer; null if it failed
    std::optional<RuntimeError> firstError{};
    bool isSecondSent = false;  ///< or may have been
    std::shared_ptr<Recordset> second{};
    std::optional<RuntimeError> secondError{};
    bool wasSecondShort = false;  ///< the first left it less than most of the time for a statement
  };
  /// Empty if nothing was sent at all.
  std::optional<End> send(PreparedStatement& statement, const ProcedureCall& first,
                          const ProcedureCall& second);

 private:
  std::optional<std::string> make(const ProcedureCall& first, const ProcedureCall& second);
  std::string makeProcedure(const ProcedureCall& first, const ProcedureCall& second);
  End endOf(const std::shared_ptr<MemoryRecordset>& answer, const std::string& mark) const;
  End endOf(const RuntimeError& error, const std::string& mark);
  std::optional<std::chrono::milliseconds> reachedAfter(const std::string& mark);

  OdbcSession& session_;
  const std::string secret_;  // of the marks: no text of a record can be one
  // By both names and numbers of parameters; empty where they cannot be sent so.
  std::map<std::string, std::optional<PreparedStatement>, std::less<>> statements_;
  std::uint64_t sent_ = 0;
};

/// What a pair asks of its connection.
struct PairOwner {
  std::function<std::shared_ptr<Recordset>(const ProcedureCall&)> run;  ///< a call by itself
  /// Notes that a call failed; whether it is known to have changed nothing.
  std::function<bool(const ProcedureCall&, const RuntimeError&)> noteFailure;
};

/// The pair that is sent by the statement. All outlive it.
std::unique_ptr<CallPair> pairOf(PairedCalls& calls, PreparedStatement& statement,
                                 OdbcSession& session, PairOwner owner, const ProcedureCall& first,
                                 const ProcedureCall& second);

}  // namespace velk
