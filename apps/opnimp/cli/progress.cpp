#include "apps/opnimp/cli/progress.h"

#include <iomanip>
#include <string>

#include "apps/opnimp/cli/printable.h"

namespace velk {

std::string progressText(std::size_t done, std::size_t total, std::size_t before, double seconds) {
  std::string text = grouped(done) + " of " + grouped(total) + " records";
  const double rate = static_cast<double>(done - before) / seconds;
  // The first seconds say nothing that would last.
  if (seconds < 2 || rate < 1 || done > total) return text;
  const auto left = static_cast<std::size_t>(static_cast<double>(total - done) / rate);
  text += ", " + grouped(static_cast<std::size_t>(rate)) + " a second, ";
  return text + (left < 120 ? grouped(left) + " s left" : grouped(left / 60) + " minutes left");
}

void Progress::show(std::size_t record) {
  if (!enabled_) return;
  // More often than ten times a second would slow the run down and could not be read.
  constexpr std::chrono::milliseconds interval{100};
  const auto now = Clock::now();
  if (now < nextDraw_) return;
  const std::size_t done = before_ + record;
  if (nextDraw_ == Clock::time_point()) {
    firstDraw_ = now;
    first_ = done;
  }
  nextDraw_ = now + interval;
  const double seconds = std::chrono::duration<double>(now - firstDraw_).count();
  const std::string text = progressText(done, total_, first_, seconds);
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
