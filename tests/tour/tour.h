// The demonstration host in use: a complete import of each kind, by mouse or by keyboard alone,
// with a picture of every stage, and a check of what the database holds in the end.
#pragma once

#include <string>

namespace velk {

struct TourOptions {
  bool byKeyboard = false;
  int dotsPerInch = 96;
  std::wstring documented;  ///< the folder of the documents' pictures; empty: none
};

struct TourResult {
  std::string done;  ///< what was done
  /// The documents' pictures that are not what was shown, a line each.
  std::string outdated;
};

/// Starts the host that lies beside this program, on a new sample company there, imports the files
/// from the folder "samples" beside it, and closes the host. The pictures go to `folder`. Error 5
/// when something that should happen does not, when a text is cut, or when the database does not
/// hold what should have been posted; 55 when the folder holds a company already.
TourResult runTour(const std::wstring& folder, const TourOptions& options);

}  // namespace velk
