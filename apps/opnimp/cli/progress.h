// The progress line of a long run on a terminal: "12,345 of 32,766 records, 1,234 a second, 17 s
// left".
#pragma once

#include <chrono>
#include <cstddef>
#include <ostream>
#include <string>

namespace velk {

/// Of `done` records, `before` of which were done `seconds` ago.
std::string progressText(std::size_t done, std::size_t total, std::size_t before, double seconds);

class Progress {
 public:
  Progress(std::ostream& err, bool enabled) : err_(err), enabled_(enabled) {}
  ~Progress() { erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void setTotal(std::size_t total) { total_ = total; }
  /// As many records were before those that are shown from now on.
  void setBefore(std::size_t before) { before_ = before; }
  /// Draws the line, a few times a second at most.
  void show(std::size_t record);
  /// Removes the line, so that other text can be written in its place.
  void erase();

 private:
  std::ostream& err_;
  const bool enabled_;
  std::size_t total_ = 0;
  std::size_t before_ = 0;
  std::size_t drawnWidth_ = 0;
  using Clock = std::chrono::steady_clock;
  std::size_t first_ = 0;  // that was shown
  Clock::time_point firstDraw_{};
  Clock::time_point nextDraw_{};
};

}  // namespace velk
