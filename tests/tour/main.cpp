// Drives the demonstration host from outside, as its user would.
#include <ole2.h>

#include <cstdio>
#include <filesystem>

#include "platform/windows/com_errors.h"
#include "tests/tour/tour.h"

namespace {

constexpr int exitFailed = 1;
constexpr int exitUsage = 3;

}  // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::puts(
        "opnimp_tour FOLDER: imports a file of each kind by mouse and keyboard into a new\n"
        "sample company in FOLDER, and saves a picture of every stage there");
    return exitUsage;
  }
  CoInitialize(nullptr);  // for the imaging component; until the process ends
  try {
    const auto folder = std::filesystem::absolute(words[1]);
    std::filesystem::create_directories(folder);
    std::puts(velk::runTour(folder.wstring()).c_str());
    return 0;
  } catch (...) {
    std::puts(velk::currentError().description().c_str());
    return exitFailed;
  }
}
