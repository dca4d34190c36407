// What the component asks of the desktop it runs on: message boxes, file dialogs, the application
// folder, the clock, the shell.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/dates.h"
#include "ui/file_dialog.h"

namespace velk {

/// Style numbers of the platform's message box.
inline constexpr std::int32_t styleOk = 0;
inline constexpr std::int32_t styleCritical = 16;
inline constexpr std::int32_t styleExclamation = 48;
inline constexpr std::int32_t styleInformation = 64;

/// The answer of a message box that has only an OK button.
inline constexpr std::int32_t answerOk = 1;

class Desktop : public FileDialogs {
 public:
  /// The platform's message box, modal. Without a caption it carries the library's name. `style` is
  /// passed on as it is, also when it is no known style. Returns the number of the button pressed.
  virtual std::int32_t messageBox(std::string_view prompt, std::int32_t style,
                                  std::optional<std::string_view> caption = std::nullopt) = 0;

  /// Folder of the host's executable, without a separator at its end.
  virtual std::string applicationFolder() const = 0;

  /// Local date and time.
  virtual Date now() const = 0;
  /// Fills the missing year of a date text.
  int currentYear() const { return civilFromDate(now()).year; }

  /// The shell's "open" action on a file.
  virtual void openDocument(std::string_view path) = 0;

  /// Shows (true) or takes back (false) the wait cursor; calls nest.
  virtual void waitCursor(bool on) = 0;
};

/// Shows the wait cursor while it lives.
class WaitCursor {
 public:
  explicit WaitCursor(Desktop& desktop) : desktop_(desktop) { desktop_.waitCursor(true); }
  ~WaitCursor() { desktop_.waitCursor(false); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  Desktop& desktop_;
};

}  // namespace velk
