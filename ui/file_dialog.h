// The dialogs in which a user chooses a file.
#pragma once

#include <optional>
#include <string>

namespace velk {

enum class FileDialogKind { Open, Save };

struct FileDialog {
  FileDialogKind kind = FileDialogKind::Open;
  std::string title;          ///< empty: the platform's own
  std::string filter;         ///< "description|pattern|description|pattern..."
  int filterIndex = 1;        ///< 1 is the first filter
  std::string initialFolder;  ///< empty: the platform's choice
  std::string fileName;       ///< what the name box contains at first
};

class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  /// The full path chosen, or nothing when the user cancelled.
  virtual std::optional<std::string> askForFile(const FileDialog& dialog) = 0;
};

}  // namespace velk
