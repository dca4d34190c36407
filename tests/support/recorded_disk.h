// A disk that loses its power: what a program did to the files of a folder
// (tests/faults/recording.h) is done to it change by change, and what was not synced can be lost.
#pragma once

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace velk {

/// By path below the folder; those of folders end with '/'.
using DiskFiles = std::map<std::string, std::string>;

class RecordedDisk {
 public:
  struct Change {
    std::string verb;
    std::string path;
    std::string to;
    std::size_t at = 0;
    std::string bytes;
  };
  static std::vector<Change> readChanges(const std::string& recorded);

  /// What is in the folder is on the disk.
  explicit RecordedDisk(const TemporaryFolder& folder);

  void apply(const Change& change);

  enum class Loss {
    Nothing,       ///< the program was only killed
    All,           ///< that was not synced
    BytesNotNames  ///< files have their names and lengths, but zeros or what was there before
  };
  DiskFiles after(Loss loss) const;
  /// Names are there or not, and each sector of 512 bytes that was not synced.
  DiskFiles afterAny(std::mt19937& random) const;

 private:
  struct File {
    std::string bytes;
    std::string synced;
  };
  using Names = std::map<std::string, std::shared_ptr<File>>;

  File& file(const std::string& path);
  void sync(const std::string& path);

  Names names_;
  Names syncedNames_;
};

/// Puts them into a folder.
void write(const TemporaryFolder& folder, const DiskFiles& files);

}  // namespace velk
