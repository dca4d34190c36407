#include "platform/windows/pending_input.h"

#include <utility>

namespace velk {

namespace {

bool& isDropping() {
  thread_local bool dropping = false;
  return dropping;
}

struct MessageRange {
  UINT first;
  UINT last;
};

// Window frames are clicked, too: their messages are not among those of the mouse.
constexpr MessageRange inputMessages[] = {
    {WM_KEYFIRST, WM_KEYLAST}, {WM_MOUSEFIRST, WM_MOUSELAST}, {WM_NCMOUSEMOVE, WM_NCXBUTTONDBLCLK}};

}  // namespace

void dropPendingInput() noexcept {
  const bool outer = std::exchange(isDropping(), true);
  KeptQuit quit;
  MSG message;
  for (const MessageRange& range : inputMessages) {
    while (PeekMessageW(&message, nullptr, range.first, range.last, PM_REMOVE) != FALSE) {
      quit.saw(message);
    }
  }
  isDropping() = outer;
}

bool dropsPendingInput() noexcept {
  return isDropping();
}

}  // namespace velk
