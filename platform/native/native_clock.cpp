#include "platform/native/native_clock.h"

#include <ctime>

namespace velk {

Date localNow() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  // Not std::localtime, whose result all threads share.
  localtime_r(&now, &local);
  const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
  return dateFromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday},
                       seconds / double{secondsPerDay});
}

}  // namespace velk
