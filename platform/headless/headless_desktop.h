// A desktop without a display: messages go to a handler, and the file dialogs answer with the file
// that was set before.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/desktop.h"
#include "platform/headless/message.h"

namespace velk {

class HeadlessDesktop final : public Desktop {
 public:
  HeadlessDesktop(std::string applicationFolder, std::function<Date()> clock,
                  MessageHandler messages)
      : folder_(std::move(applicationFolder)),
        clock_(std::move(clock)),
        messages_(std::move(messages)) {}

  std::vector<std::string> opened;  ///< the documents that a desktop would have opened

  /// What the file dialogs answer from now on; nothing means cancel.
  void chooseFile(std::optional<std::string> path) { choice_ = std::move(path); }

  std::int32_t messageBox(std::string_view prompt, std::int32_t style,
                          std::optional<std::string_view> caption) override {
    messages_({std::string(prompt), style, std::optional<std::string>(caption), false});
    return answerOk;
  }
  std::optional<std::string> askForFile(const FileDialog&) override { return choice_; }
  std::string applicationFolder() const override { return folder_; }
  Date now() const override { return clock_(); }
  void openDocument(std::string_view path) override { opened.emplace_back(path); }
  void waitCursor(bool) override {}

 private:
  std::string folder_;
  std::function<Date()> clock_;
  MessageHandler messages_;
  std::optional<std::string> choice_;
};

}  // namespace velk
