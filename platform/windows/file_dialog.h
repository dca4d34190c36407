// The platform's file dialogs.
#pragma once

#include <optional>
#include <string>

#include "ui/file_dialog.h"

namespace velk {

enum class FileDialogKind { Open, Save };

/// The full path chosen; nothing when the user cancelled. Owned by the thread's active window.
std::optional<std::string> showFileDialog(FileDialogKind kind, const FileDialog& dialog);

}  // namespace velk
