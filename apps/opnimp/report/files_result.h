// What a call came to that imports several files.
#pragma once

#include <string>
#include <vector>

#include "apps/opnimp/report/import_result.h"

namespace velk {

/// The results live as long; there is one at least.
class FilesResult {
 public:
  explicit FilesResult(std::vector<const ImportResult*> files) : files_(std::move(files)) {}

  const std::vector<const ImportResult*>& files() const { return files_; }
  const Arguments& arguments() const { return files_.front()->arguments; }
  /// Whether nothing was posted because a file was refused.
  bool refused() const;
  /// The worst of the files. One that was refused when another had been imported already has
  /// broken off.
  ExitStatus status() const;
  /// Of all files together; without those that were refused or passed over.
  Account account() const;
  /// What the user should do now, a sentence each; never empty.
  std::vector<std::string> nextSteps() const;

 private:
  bool hasBegun() const;

  std::vector<const ImportResult*> files_;
};

}  // namespace velk
