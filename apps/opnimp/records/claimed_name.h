// A name for a file that is made now, and takes the place of none.
#pragma once

#include <filesystem>
#include <string>

#include "apps/opnimp/records/file_bytes.h"
#include "platform/files.h"

namespace velk {

/// Makes an empty file at `path`, to be replaced by what is written; it goes again unless it is
/// kept. Errors: files.h.
class ClaimedName {
 public:
  ClaimedName(FileSystem& files, const std::string& path);
  ClaimedName(const ClaimedName&) = delete;
  ClaimedName& operator=(const ClaimedName&) = delete;
  ~ClaimedName();

  /// False if there was a file already, which stays as it is.
  bool isNew() const { return isNew_; }
  void keep() { kept_ = true; }

 private:
  const std::filesystem::path path_;
  const bool isNew_;
  bool kept_ = false;
};

/// Does what writes the file, which has to be new: raises UsageError where somebody made one of
/// that name, at whatever moment.
template <class Action>
void asNewFile(FileSystem& files, const std::string& path, Action write) {
  ClaimedName claim(files, path);
  if (!claim.isNew()) requireNoFile(path);
  write();
  claim.keep();
}

}  // namespace velk
