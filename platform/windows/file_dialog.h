// The platform's file dialogs.
#pragma once

#include <optional>
#include <string>

#include "platform/desktop.h"

namespace velk {

enum class FileDialogKind { Open, Save };

/// The full path chosen; empty optional when the user cancelled. Owned by the thread's active
/// window.
std::optional<std::string> showFileDialog(FileDialogKind kind, const FileDialog& dialog);

}  // namespace velk
