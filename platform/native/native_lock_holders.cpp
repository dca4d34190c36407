#include "platform/native/native_lock_holders.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

namespace velk {

namespace {

// Number, kind, mode, access, process, file, and the bytes that are locked.
constexpr std::size_t leastColumns = 6;

/// As the system's list of locks has it: "08:01:131", the device in hexadecimal digits.
std::string inListOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return {};
  char text[64];
  const int length =
      std::snprintf(text, sizeof text, "%02x:%02x:%llu", major(status.st_dev), minor(status.st_dev),
                    static_cast<unsigned long long>(status.st_ino));
  return {text, static_cast<std::size_t>(length)};
}

std::string nameOf(const std::string& process) {
  std::string name;
  std::ifstream file("/proc/" + process + "/comm");
  std::getline(file, name);
  return "process " + process + (name.empty() ? "" : " (" + name + ")");
}

}  // namespace

std::vector<std::string> lockHoldersOf(const std::vector<std::string>& paths) {
  std::vector<std::string> wanted;
  wanted.reserve(paths.size());
  for (const std::string& path : paths) wanted.push_back(inListOf(path));
  std::vector<std::string> holders;
  std::ifstream list("/proc/locks");
  for (std::string line; std::getline(list, line);) {
    // A lock that is waited for has "->" before its kind, and so fits none of what follows.
    std::istringstream words(line);
    const std::vector<std::string> columns{std::istream_iterator<std::string>(words), {}};
    if (columns.size() < leastColumns) continue;
    const std::string& access = columns[3];
    const std::string& process = columns[4];
    const std::string& file = columns[5];
    if (access != "WRITE" || process == std::to_string(::getpid())) continue;
    if (std::ranges::find(wanted, file) == wanted.end()) continue;
    const std::string name = nameOf(process);
    if (std::ranges::find(holders, name) == holders.end()) holders.push_back(name);
  }
  return holders;
}

}  // namespace velk
