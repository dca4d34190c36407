// The dialogs in which a user chooses a file.
#pragma once

#include <optional>
#include <string>

namespace velk {

struct FileDialog {
  std::string title;          ///< empty: the platform's own
  std::string filter;         ///< "description|pattern|description|pattern..."
  int filterIndex = 1;        ///< 1 is the first filter
  std::string initialFolder;  ///< empty: the platform's choice
  std::string fileName;       ///< what the name box contains at first
};

/// Each returns the full path chosen, or nothing when the user cancelled.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  virtual std::optional<std::string> chooseFileToOpen(const FileDialog& dialog) = 0;
  virtual std::optional<std::string> chooseFileToSave(const FileDialog& dialog) = 0;
};

}  // namespace velk
