// Finds out whom a run waits for when the database does not answer at once.
#pragma once

#include <functional>
#include <future>

#include "apps/opnimp/audit/run_gate.h"
#include "platform/database.h"

namespace velk {

/// May take long; empty: nobody can tell.
using LockQuestion = std::function<LockHolders()>;

class LockWatch {
 public:
  /// While the run stands still within a call, `question` gives what is asked then, in a thread of
  /// its own, and `tell` gets the answer if there is something in it.
  LockWatch(RunGate& gate, std::function<LockQuestion()> question,
            std::function<void(const LockHolders&)> tell)
      : gate_(gate), question_(std::move(question)), tell_(std::move(tell)) {}

  /// To be called again and again.
  void look();

 private:
  void lookAt(RunGate::Time began);
  void ask();

  RunGate& gate_;
  const std::function<LockQuestion()> question_;
  const std::function<void(const LockHolders&)> tell_;
  std::future<LockHolders> answer_;
  RunGate::Time asked_;    // of the call that the question is about, when it began
  RunGate::Time nextAsk_;  // not before
  bool isTold_ = false;    // of that call
  bool isRightTold_ = false;
};

}  // namespace velk
