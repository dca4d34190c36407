#include "apps/opnimp/cli/progress.h"

#include <iomanip>
#include <string>

#include "apps/opnimp/cli/printable.h"

namespace velk {

void Progress::show(std::size_t record) {
  if (!enabled_) return;
  // More often than ten times a second would slow the run down and could not be read.
  constexpr std::chrono::milliseconds interval{100};
  const auto now = std::chrono::steady_clock::now();
  if (now < nextDraw_) return;
  nextDraw_ = now + interval;
  const std::string text = grouped(before_ + record) + " of " + grouped(total_) + " records";
  // The blanks cover what remains of a longer line.
  err_ << '\r' << padRight(text, drawnWidth_) << std::flush;
  drawnWidth_ = text.size();  // all ASCII, so a byte is a character
}

void Progress::erase() {
  if (drawnWidth_ == 0) return;
  err_ << '\r' << std::setw(static_cast<int>(drawnWidth_)) << "" << '\r' << std::flush;
  drawnWidth_ = 0;
}

}  // namespace velk
