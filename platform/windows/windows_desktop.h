// The desktop that the host's process runs on.
#pragma once

#include "platform/desktop.h"

namespace velk {

/// The name that message boxes without a caption carry.
inline constexpr std::string_view libraryName = "Velk_OpnImp";

class WindowsDesktop final : public Desktop {
 public:
  /// Owned by the thread's active window and modal to all windows of the thread. What the user did
  /// before it is shown is dropped. A style that Windows refuses is shown with its icon and an OK
  /// button.
  std::int32_t messageBox(std::string_view prompt, std::int32_t style,
                          std::optional<std::string_view> caption = std::nullopt) override;
  /// Owned and modal as a message box is, and as heedless of what the user did before.
  std::optional<std::string> askForFile(const FileDialog& dialog) override;
  std::string applicationFolder() const override;
  Date now() const override;
  void openDocument(std::string_view path) override;
  void waitCursor(bool on) override;

 private:
  int waits_ = 0;
};

}  // namespace velk
