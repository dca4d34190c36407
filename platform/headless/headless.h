// Screens without a window: what the runner and the tests put in the place of a desktop and a host.
//
// Events are raised by calling the controls' user... members. Messages go to one handler; the file
// dialog answers with the file set before.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop.h"
#include "platform/host_service.h"
#include "ui/form.h"

namespace velk {

struct Message {
  std::string prompt;
  std::int32_t style = styleOk;
  std::optional<std::string> caption;
  bool throughHost = false;  ///< shown by the host service, not by the platform's message box
};

using MessageHandler = std::function<void(const Message&)>;

class HeadlessDesktop final : public Desktop {
 public:
  HeadlessDesktop(std::string applicationFolder, std::function<Date()> clock,
                  MessageHandler messages);

  std::vector<std::string> opened;  ///< the documents that a desktop would have opened

  /// What the file dialogs answer from now on; nothing means cancel.
  void chooseFile(std::optional<std::string> path) { choice_ = std::move(path); }

  std::int32_t messageBox(std::string_view prompt, std::int32_t style,
                          std::optional<std::string_view> caption) override;
  std::optional<std::string> chooseFileToOpen(const FileDialog&) override { return choice_; }
  std::optional<std::string> chooseFileToSave(const FileDialog&) override { return choice_; }
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

class HeadlessHostService final : public PlainHostService {
 public:
  explicit HeadlessHostService(MessageHandler messages) : messages_(std::move(messages)) {}

  Value messageBox(std::string_view prompt, std::int32_t style,
                   std::optional<std::string_view> caption) override;

 private:
  MessageHandler messages_;
};

class HeadlessShell final : public FormShell {
 public:
  void show(std::shared_ptr<Form> form) override { open_.push_back(std::move(form)); }
  void closed(Form& form) noexcept override;
  Menu* popup(Form& form, Menu& menu) override;

  /// The forms now shown, in the order of showing.
  std::span<const std::shared_ptr<Form>> open() const { return open_; }
  /// What the user picks from a popup menu; without it, nothing.
  std::function<Menu*(Form&, Menu&)> onPopup;

 private:
  std::vector<std::shared_ptr<Form>> open_;
};

}  // namespace velk
