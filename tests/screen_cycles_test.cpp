// Months of use without windows: what a screen takes it gives back.
#include <malloc.h>

#include "tests/support/screen_use.h"

namespace velk {
namespace {

// The sanitizers' memory is not counted here; they look for leaks themselves.
std::size_t allocatedBytes() {
  return mallinfo2().uordblks;
}

TEST_CASE("cycles: screens used over and over leave no memory behind") {
  for (const ScreenUse& use : screenUses) {
    CAPTURE(use.file);
    const auto cycle = [&] { useScreen(use, nullptr, [] {}); };
    cycle();
    const int times = cycles(200);
    const std::size_t before = allocatedBytes();
    for (int i = 0; i < times; ++i) cycle();
    CHECK(allocatedBytes() <= before + allowedGrowth(times));
  }
}

}  // namespace
}  // namespace velk
