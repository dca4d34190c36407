#include "platform/windows/forms/progress_display.h"

#include "base/numbers.h"
#include "platform/windows/pending_input.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

// A window that asks for messages does not count as hung, even if it wants only these.
void paintWhatIsDue() {
  constexpr int mostWindows = 100;  // a host's window that never gets done must not hold the run
  MSG message;
  KeptQuit quit;
  for (int i = 0; i < mostWindows; ++i) {
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT) == FALSE) return;
    quit.saw(message);
    DispatchMessageW(&message);
  }
}

}  // namespace

void ProgressDisplay::show(HWND window, const std::string& caption, std::size_t done,
                           std::size_t total) {
  constexpr ULONGLONG interval = 100;  // milliseconds
  const ULONGLONG now = GetTickCount64();
  if (last_ == 0) last_ = now;  // short work shows nothing at all
  if (now - last_ < interval) return;
  last_ = now;
  if (!taskbar_) taskbar_.emplace(window);
  taskbar_->show(done, total);
  // Before the caption, because the taskbar shows the beginning only.
  if (done > 0) {
    const std::string all = total == 0 ? "" : " of " + grouped(total);
    SetWindowTextW(window, toWide(grouped(done) + all + " records - " + caption).c_str());
  }
  paintWhatIsDue();
}

void ProgressDisplay::end(HWND window, const std::string& caption) {
  last_ = 0;
  if (!taskbar_) return;
  taskbar_.reset();
  SetWindowTextW(window, toWide(caption).c_str());
}

}  // namespace velk
