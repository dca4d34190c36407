#include "platform/native/native_state.h"

#include <cstdlib>
#include <fstream>

namespace velk {

namespace {

// Nothing of the program changes the environment. NOLINTBEGIN(concurrency-mt-unsafe)
std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}
// NOLINTEND(concurrency-mt-unsafe)

}  // namespace

// A relative path has no meaning there, and is to be ignored.
std::string stateFolder() {
  std::string state = environment("XDG_STATE_HOME");
  if (state.starts_with('/')) return state;
  const std::string home = environment("HOME");
  return home.starts_with('/') ? home + "/.local/state" : std::string();
}

std::string machineStart() {
  std::string id;
  std::getline(std::ifstream("/proc/sys/kernel/random/boot_id"), id);
  return id;
}

}  // namespace velk
