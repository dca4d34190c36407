// The host application's service object: captions in the user's language, messages in the host's
// style, and two hooks through which the host learns of each screen.
//
// The six operations are in the order of the interface's slots. A failed call is a RuntimeError.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/errors.h"
#include "base/values.h"

namespace velk {

class Form;

/// The second host object: the host's main window.
class HostMainWindow {
 public:
  virtual ~HostMainWindow() = default;
  /// Moves the focus to one element of the window's cmdMainMenu control array.
  virtual void focusMainMenu(int element) = 0;
};

class HostService {
 public:
  virtual ~HostService() = default;

  /// 1: called at the end of a screen's set-up, with true.
  virtual void screenReady(Form& screen, bool flag) = 0;
  /// 2: the caption of a key in the user's language.
  virtual Value caption(std::string_view application, std::string_view category,
                        std::string_view key) = 0;
  /// 3: called at the start of a screen's set-up.
  virtual void screenStarting(Form& screen) = 0;
  /// 4: as 2, with a text as the result.
  virtual std::string captionText(std::string_view application, std::string_view category,
                                  std::string_view key) = 0;
  /// 5: a message in the host's style; styles are those of Desktop::messageBox. Without a caption
  /// the host supplies its own. Help file and context are never given.
  virtual Value messageBox(std::string_view prompt, std::int32_t style,
                           std::optional<std::string_view> caption = std::nullopt) = 0;
  /// 6: prepares a message before it is shown with 5.
  virtual std::string messageText(std::string_view text, std::span<const Value> arguments) = 0;

  /// Asks the object for its second interface. Error 438 or 429 when it has none.
  virtual std::shared_ptr<HostMainWindow> mainWindow() = 0;
};

/// A host's service without a host: captions are their keys, prepared messages the text as it is,
/// and there is no main window (error 438). Who derives from it shows the messages.
class PlainHostService : public HostService {
 public:
  void screenReady(Form&, bool) override {}
  Value caption(std::string_view, std::string_view, std::string_view key) override {
    return std::string(key);
  }
  void screenStarting(Form&) override {}
  std::string captionText(std::string_view, std::string_view, std::string_view key) override {
    return std::string(key);
  }
  std::string messageText(std::string_view text, std::span<const Value>) override {
    return std::string(text);
  }
  std::shared_ptr<HostMainWindow> mainWindow() override {
    throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  }
};

}  // namespace velk
