// Lets another thread draw up the account of a run that waits for a database which does not answer.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <utility>

namespace velk {

class RunGate {
 public:
  RunGate() = default;
  RunGate(const RunGate&) = delete;
  RunGate& operator=(const RunGate&) = delete;

  /// For the run: throws RunEnded once the gate is closed.
  void requireOpen();

  enum class Limit { Statements, None };
  /// For the run: makes one call of the database, and does not come back from it once the other
  /// thread has taken over. Without a limit for opening a database, which has one of its own, and
  /// for the end of a transaction, which has none.
  template <class Call>
  auto pass(Call&& call, Limit limit = Limit::Statements) {
    const Within within(*this, limit);
    return std::forward<Call>(call)();
  }

  /// For the other thread: the run is to end before its next call, and why.
  void close(std::string why);
  using Time = std::chrono::steady_clock::time_point;
  /// For the other thread: `look` gets the time at which the call began that the run is within,
  /// and does not leave meanwhile; false if it is within none.
  template <class Look>
  bool duringCall(Look&& look) {
    const std::lock_guard lock(mutex_);
    if (inCall_) std::forward<Look>(look)(began_);
    return inCall_;
  }
  /// For the other thread: whether a call has taken longer than its statement may.
  bool isOverdue(std::chrono::milliseconds limit);
  /// For the other thread: true if the run is within a call, which it then never leaves, so that
  /// everything else of it stands still.
  bool takeOver();

 private:
  class Within {
   public:
    Within(RunGate& gate, Limit limit) : gate_(gate) { gate_.enter(limit); }
    ~Within() { gate_.leave(); }
    Within(const Within&) = delete;
    Within& operator=(const Within&) = delete;

   private:
    RunGate& gate_;
  };
  void enter(Limit limit);
  void leave();

  std::mutex mutex_;
  std::condition_variable never_;
  bool inCall_ = false;
  Time began_;
  Limit limit_ = Limit::Statements;
  bool takenOver_ = false;
  std::string why_;  // empty: open
};

}  // namespace velk
