#include "apps/opnimp/audit/run_gate.h"

#include "apps/opnimp/audit/run_ended.h"

namespace velk {

void RunGate::requireOpen() {
  const std::lock_guard lock(mutex_);
  if (!why_.empty()) throw RunEnded{why_};
}

void RunGate::close(std::string why) {
  const std::lock_guard lock(mutex_);
  why_ = std::move(why);
}

bool RunGate::takeOver() {
  const std::lock_guard lock(mutex_);
  takenOver_ = inCall_;
  return takenOver_;
}

bool RunGate::isOverdue(std::chrono::milliseconds limit) {
  const std::lock_guard lock(mutex_);
  const auto taken = std::chrono::steady_clock::now() - began_;
  return inCall_ && limit_ == Limit::Statements && taken > limit;
}

void RunGate::enter(Limit limit) {
  const std::lock_guard lock(mutex_);
  inCall_ = true;
  limit_ = limit;
  began_ = std::chrono::steady_clock::now();
}

void RunGate::leave() {
  std::unique_lock lock(mutex_);
  // The account is being written, or is: what the call brings comes too late.
  never_.wait(lock, [this] { return !takenOver_; });
  inCall_ = false;
}

}  // namespace velk
