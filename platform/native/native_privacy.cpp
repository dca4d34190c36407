#include "platform/native/native_privacy.h"

#include <filesystem>
#include <system_error>

#include "platform/native/native_shell.h"

namespace velk {

// Any right counts: what others may write, they can make readable.
bool othersMayRead(const std::string& path) {
  using enum std::filesystem::perms;
  std::error_code error;
  const auto rights = std::filesystem::status(path, error).permissions();
  return (rights & (group_all | others_all)) != none;
}

void makePrivate(const std::string& path) {
  using enum std::filesystem::perms;
  std::error_code ignored;
  std::filesystem::permissions(path, owner_read | owner_write, ignored);
}

std::string commandToKeepPrivate(const std::string& path) {
  return "chmod 600 " + shellWord(path).value();
}

}  // namespace velk
