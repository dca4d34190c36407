#include "apps/host/host_errors.h"

namespace velk {

RuntimeError explained(const RuntimeError& cause, std::string_view whatFailed,
                       std::string_view remedy) {
  std::string story(whatFailed);
  story.append("\n\n").append(cause.description()).append("\n\n").append(remedy);
  return {cause.number(), story};
}

}  // namespace velk
