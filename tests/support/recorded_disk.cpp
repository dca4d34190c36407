#include "tests/support/recorded_disk.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace velk {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t sector = 512;

/// The folder of a path, "" or with its '/'.
std::string folderOf(const std::string& path) {
  const std::size_t end = path.find_last_of('/', path.size() - 2);
  return end == std::string::npos ? "" : path.substr(0, end + 1);
}

std::string withSectors(const std::string& synced, const std::string& bytes, std::mt19937& random) {
  std::string some = synced;
  if (random() % 2 == 0) some.resize(bytes.size());
  for (std::size_t at = 0; at < std::min(some.size(), bytes.size()); at += sector) {
    const std::size_t count = std::min({sector, bytes.size() - at, some.size() - at});
    if (random() % 2 == 0) some.replace(at, count, bytes, at, count);
  }
  return some;
}

/// Without those in folders that are not there.
template <class Names>
Names reachable(Names names) {
  // A folder comes before what is in it.
  for (auto name = names.begin(); name != names.end();) {
    const std::string folder = folderOf(name->first);
    name = folder.empty() || names.contains(folder) ? std::next(name) : names.erase(name);
  }
  return names;
}

}  // namespace

std::vector<RecordedDisk::Change> RecordedDisk::readChanges(const std::string& recorded) {
  std::vector<Change> changes;
  std::istringstream stream(recorded);
  for (std::string line; std::getline(stream, line);) {
    std::istringstream words(line);
    Change change;
    std::size_t count = 0;
    words >> change.verb;
    if (change.verb == "write") words >> change.at >> count;
    if (change.verb == "length") words >> change.at;
    words >> change.path >> change.to;
    change.bytes.resize(count);
    stream.read(change.bytes.data(), static_cast<std::streamsize>(count));
    changes.push_back(std::move(change));
  }
  return changes;
}

RecordedDisk::RecordedDisk(const TemporaryFolder& folder) {
  for (const auto& entry : fs::directory_iterator(folder.path(""))) {
    const std::string name = entry.path().filename().string();
    const std::string bytes = folder.read(name);
    names_[name] = std::make_shared<File>(File{bytes, bytes});
  }
  syncedNames_ = names_;
}

// One that the C library made by itself is heard of when it is written to.
RecordedDisk::File& RecordedDisk::file(const std::string& path) {
  auto& file = names_[path];
  if (!file) file = std::make_shared<File>();
  return *file;
}

void RecordedDisk::apply(const Change& change) {
  const std::string& verb = change.verb;
  if (verb == "sync") return sync(change.path);
  if (verb == "remove") {
    names_.erase(change.path);
  } else if (verb == "rename" || verb == "link") {
    file(change.path);
    names_[change.to] = names_[change.path];
    if (verb == "rename") names_.erase(change.path);
  } else if (verb == "make") {
    file(change.path).bytes.clear();
  } else if (verb == "length") {
    file(change.path).bytes.resize(change.at);
  } else {
    std::string& bytes = file(change.path).bytes;
    bytes.resize(std::max(bytes.size(), change.at + change.bytes.size()));
    bytes.replace(change.at, change.bytes.size(), change.bytes);
  }
}

void RecordedDisk::sync(const std::string& path) {
  const std::string folder = path.empty() ? "" : path + "/";
  if (!path.empty() && !names_.contains(folder)) {
    file(path).synced = file(path).bytes;
    return;
  }
  std::erase_if(syncedNames_, [&](const auto& name) { return folderOf(name.first) == folder; });
  for (const auto& name : names_) {
    if (folderOf(name.first) == folder) syncedNames_.insert(name);
  }
}

DiskFiles RecordedDisk::after(Loss loss) const {
  DiskFiles files;
  for (const auto& [name, file] : reachable(loss == Loss::All ? syncedNames_ : names_)) {
    files[name] = loss == Loss::Nothing ? file->bytes : file->synced;
    if (loss == Loss::BytesNotNames) files[name].resize(file->bytes.size());
  }
  return files;
}

DiskFiles RecordedDisk::afterAny(std::mt19937& random) const {
  Names some;
  for (const auto& name : syncedNames_) {
    if (names_.contains(name.first) || random() % 2 == 0) some.insert(name);
  }
  for (const auto& name : names_) {
    if (random() % 2 == 0) some[name.first] = name.second;
  }
  DiskFiles files;
  for (const auto& [name, file] : reachable(some)) {
    files[name] = withSectors(file->synced, file->bytes, random);
  }
  return files;
}

void write(const TemporaryFolder& folder, const DiskFiles& files) {
  for (const auto& [name, bytes] : files) {
    if (name.ends_with('/')) {
      fs::create_directories(folder.path(name));
    } else {
      folder.write(name, bytes);
    }
  }
}

}  // namespace velk
