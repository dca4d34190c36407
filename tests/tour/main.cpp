// Drives the demonstration host from outside, as its user would.
#include <ole2.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "platform/windows/com_errors.h"
#include "tests/tour/tour.h"

namespace {

constexpr int exitFailed = 1;
constexpr int exitUsage = 3;
constexpr int exitOutdated = 4;

bool readOptions(std::string_view hands, const char* dots, velk::TourOptions& options) {
  options.byKeyboard = hands == "keyboard";
  options.dotsPerInch = std::atoi(dots);
  return (options.byKeyboard || hands == "mouse") && options.dotsPerInch >= 96 &&
         options.dotsPerInch <= 192;
}

}  // namespace

int main(int count, char** words) {
  velk::TourOptions options;
  const bool isUnderstood =
      count == 2 || ((count == 4 || count == 5) && readOptions(words[2], words[3], options));
  if (!isUnderstood) {
    std::puts(
        "opnimp_tour FOLDER [mouse|keyboard DOTS [DOCUMENTED]]: imports a file of each kind by "
        "mouse or by\n"
        "keyboard alone into a new sample company beside this program, on a display of 96 or as\n"
        "many dots per inch, and saves a picture of every stage in FOLDER; ends with 4 when one "
        "is\n"
        "not as the picture of its name in the folder DOCUMENTED");
    return exitUsage;
  }
  CoInitialize(nullptr);  // for the imaging component; until the process ends
  try {
    const auto folder = std::filesystem::absolute(words[1]);
    std::filesystem::create_directories(folder);
    if (count == 5) options.documented = std::filesystem::absolute(words[4]).wstring();
    const velk::TourResult result = velk::runTour(folder.wstring(), options);
    std::puts(result.done.c_str());
    if (result.outdated.empty()) return 0;
    std::printf("Not what is shown now:\n%s", result.outdated.c_str());
    return exitOutdated;
  } catch (...) {
    std::puts(velk::currentError().description().c_str());
    return exitFailed;
  }
}
