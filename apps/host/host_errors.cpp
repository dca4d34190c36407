#include "apps/host/host_errors.h"

namespace velk {

RuntimeError explained(const RuntimeError& error, std::string_view whatFailed,
                       std::string_view whatToDo) {
  std::string story(whatFailed);
  story.append("\n\n").append(error.description()).append("\n\n").append(whatToDo);
  return {error.number(), story};
}

}  // namespace velk
