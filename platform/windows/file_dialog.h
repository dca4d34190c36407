// The platform's file dialogs.
#pragma once

#include <optional>
#include <string>

#include "ui/file_dialog.h"

namespace velk {

/// The full path chosen; empty optional when the user cancelled. Owned by the thread's active
/// window.
std::optional<std::string> showFileDialog(const FileDialog& dialog);

}  // namespace velk
