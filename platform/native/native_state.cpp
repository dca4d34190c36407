#include "platform/native/native_state.h"

#include <cstdlib>
#include <fstream>
#include <string_view>

namespace velk {

namespace {

// A relative path has no meaning there, and is to be ignored.
std::string userFolder(const char* variable, std::string_view inHome) {
  std::string folder = environmentVariable(variable);
  if (folder.starts_with('/')) return folder;
  const std::string home = environmentVariable("HOME");
  return home.starts_with('/') ? home + std::string(inHome) : std::string();
}

}  // namespace

// Nothing of the program changes the environment. NOLINTBEGIN(concurrency-mt-unsafe)
std::string environmentVariable(const std::string& name) {
  const char* const value = std::getenv(name.c_str());
  return value == nullptr ? "" : value;
}
// NOLINTEND(concurrency-mt-unsafe)

std::string stateFolder() {
  return userFolder("XDG_STATE_HOME", "/.local/state");
}

std::string settingsFolder() {
  return userFolder("XDG_CONFIG_HOME", "/.config");
}

std::string machineStart() {
  std::string id;
  std::getline(std::ifstream("/proc/sys/kernel/random/boot_id"), id);
  return id;
}

}  // namespace velk
