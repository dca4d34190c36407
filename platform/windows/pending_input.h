// Keys and clicks that wait in the thread's queue.
#pragma once

#include <windows.h>

#include <optional>

namespace velk {

/// Keeps the request to end the thread's message loop for that loop: PeekMessage takes it out of
/// the queue whatever messages it is asked for.
class KeptQuit {
 public:
  KeptQuit() = default;
  ~KeptQuit() {
    if (exitCode_) PostQuitMessage(*exitCode_);
  }
  KeptQuit(const KeptQuit&) = delete;
  KeptQuit& operator=(const KeptQuit&) = delete;

  /// To be told of each message that was taken out.
  void saw(const MSG& message) {
    if (message.message == WM_QUIT) exitCode_ = static_cast<int>(message.wParam);
  }

 private:
  std::optional<int> exitCode_;
};

/// Removes them. What a user did while the thread worked was meant for what he saw then; it must
/// not hit what is shown next.
void dropPendingInput() noexcept;

/// True while they are removed: hooks see a message that is removed as one that is handled.
bool dropsPendingInput() noexcept;

}  // namespace velk
