#include "apps/opnimp/run/lock_watch.h"

#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

namespace velk {

namespace {

using namespace std::chrono_literals;
constexpr auto patience = 1s;   // with a call, before anybody is asked
constexpr auto interval = 10s;  // between questions, so that they are no load to a slow server

}  // namespace

void LockWatch::look() {
  gate_.duringCall([this](RunGate::Time began) { lookAt(began); });
}

void LockWatch::lookAt(RunGate::Time began) {
  if (answer_.valid()) {
    if (answer_.wait_for(0s) != std::future_status::ready) return;
    const LockHolders holders = answer_.get();
    // The call that it is about may have come back.
    if (asked_ != began) return;
    const bool isRightNew = !holders.missingRight.empty() && !isRightTold_;
    isTold_ = !holders.names.empty();
    isRightTold_ = isRightTold_ || isRightNew;
    if (isTold_ || isRightNew) tell_(holders);
    return;
  }
  const RunGate::Time now = std::chrono::steady_clock::now();
  if (now - began < patience || now < nextAsk_ || (asked_ == began && isTold_)) return;
  asked_ = began;
  nextAsk_ = now + interval;
  isTold_ = false;
  ask();
}

// A question that never comes back must not keep the program.
void LockWatch::ask() {
  LockQuestion question = question_();
  if (!question) return;
  std::packaged_task<LockHolders()> task(std::move(question));
  auto answer = task.get_future();
  try {
    std::thread(std::move(task)).detach();
    answer_ = std::move(answer);
  } catch (const std::system_error&) {
    // Without a further thread it stays unknown.
  }
}

}  // namespace velk
