// What measurements of windows share.
#pragma once

#include <windows.h>

#include <iostream>

#include "bench/measurement.h"

namespace velk::bench {

/// All that is posted gets handled, and all that is due in the window painted.
inline void paintAll(HWND window) {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageW(&message);
  if (window == nullptr) return;
  RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  GdiFlush();
}

inline void repaint(HWND window) {
  RedrawWindow(window, nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  GdiFlush();
}

/// Opens windows, and prints what each takes: kilobytes that no other process shares, 0, kilobytes
/// of physical memory; and how many they were.
template <class Open>
void reportMemoryOfEach(Open&& open) {
  constexpr long windows = 50;
  const long alone = privateMemory();
  const long physical = physicalMemory();
  for (long i = 0; i < windows; ++i) open();
  std::cout << (privateMemory() - alone) / windows << " 0 "
            << (physicalMemory() - physical) / windows << ' ' << windows << '\n';
}

}  // namespace velk::bench
