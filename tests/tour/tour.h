// The host shows itself: a complete import of each kind, by mouse and keyboard, with a picture of
// every stage, and a check of what the database holds in the end.
#pragma once

#include <string>

namespace velk {

struct TourPlan {
  std::string pictureFolder;
  std::wstring samplesFolder;
  std::wstring errorLog;         ///< full path
  std::string connectionString;  ///< of the new sample company that the host works on
};

/// Runs in a thread of its own while the main window's thread runs its message loop. The text that
/// it returns says what was done. Error 5 when something that should happen does not, or when the
/// database does not hold what should have been posted.
std::string runTour(const TourPlan& plan);

}  // namespace velk
