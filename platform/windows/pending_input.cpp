#include "platform/windows/pending_input.h"

#include <windows.h>

namespace velk {

namespace {

thread_local bool dropping = false;

struct MessageRange {
  UINT first;
  UINT last;
};

// Window frames are clicked, too: their messages are not among those of the mouse.
constexpr MessageRange inputMessages[] = {
    {WM_KEYFIRST, WM_KEYLAST}, {WM_MOUSEFIRST, WM_MOUSELAST}, {WM_NCMOUSEMOVE, WM_NCXBUTTONDBLCLK}};

}  // namespace

void dropPendingInput() noexcept {
  dropping = true;
  MSG message;
  for (const MessageRange& range : inputMessages) {
    while (PeekMessageW(&message, nullptr, range.first, range.last, PM_REMOVE) != FALSE) {
    }
  }
  dropping = false;
}

bool dropsPendingInput() noexcept {
  return dropping;
}

}  // namespace velk
