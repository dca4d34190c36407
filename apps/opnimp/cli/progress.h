// The progress line of a long run on a terminal: "12,345 of 32,766 records".
#pragma once

#include <chrono>
#include <cstddef>
#include <ostream>

namespace velk {

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
  std::chrono::steady_clock::time_point nextDraw_{};
};

}  // namespace velk
