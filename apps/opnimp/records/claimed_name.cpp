#include "apps/opnimp/records/claimed_name.h"

#include <system_error>

#include "platform/utf8_path.h"

namespace velk {

ClaimedName::ClaimedName(FileSystem& files, const std::string& path)
    : path_(toPath(path)), isNew_(files.openExclusively(path)) {}

ClaimedName::~ClaimedName() {
  std::error_code error;
  if (isNew_ && !kept_) std::filesystem::remove(path_, error);  // which needs no memory
}

}  // namespace velk
