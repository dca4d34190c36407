#include "apps/opnimp/report/files_result.h"

#include <algorithm>

namespace velk {

bool FilesResult::refused() const {
  return std::ranges::all_of(
      files_, [](const ImportResult* file) { return file->refused() || file->passedOver; });
}

ExitStatus FilesResult::status() const {
  ExitStatus worst = ExitStatus::Posted;
  for (const ImportResult* file : files_) worst = std::max(worst, file->status());
  return worst == ExitStatus::Refused && !refused() ? ExitStatus::BrokeOff : worst;
}

Account FilesResult::account() const {
  Account account;
  for (const ImportResult* file : files_) account += file->account;
  return account;
}

bool FilesResult::hasBegun() const {
  return std::ranges::any_of(files_, [](const ImportResult* file) { return file->run != 0; });
}

std::vector<std::string> FilesResult::nextSteps() const {
  const bool dryRun = arguments().dryRun;
  switch (status()) {
    case ExitStatus::Posted:
      return {dryRun ? "Nothing was posted. Import without --dry-run." : "Nothing is left to do."};
    case ExitStatus::RecordsLeft:
      return {"Go through what is left to do of each file above."};
    case ExitStatus::Refused:
      return {
          "Nothing was imported of any file. Correct what is refused, and leave out what is posted "
          "already, then import all of them again."};
    default:
      break;
  }
  if (dryRun || !hasBegun()) {
    return {"Go through what is left to do of each file above, then import all of them again."};
  }
  return {
      "Go through what is left to do of each file above. Then import the same files with "
      "--resume: it passes over those that are done, and goes on where this call ended."};
}

}  // namespace velk
