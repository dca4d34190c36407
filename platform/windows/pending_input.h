// Keys and clicks that wait in the thread's queue.
#pragma once

namespace velk {

/// Removes them. What a user did while the thread worked was meant for what he saw then; it must
/// not hit what is shown next.
void dropPendingInput() noexcept;

/// True while they are removed: hooks see a message that is removed as one that is handled.
bool dropsPendingInput() noexcept;

}  // namespace velk
