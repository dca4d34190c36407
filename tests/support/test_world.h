// A desktop, a host, files and a database in memory, and import screens on top of them.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "component/Velk_ClsOpnImp.h"
#include "mapping/Velk_frmCustOpn_OpnImp.h"
#include "platform/headless/headless_desktop.h"
#include "platform/headless/headless_host_service.h"
#include "shared/Velk_ModOpnImp.h"
#include "tests/support/checks.h"
#include "tests/support/fake_database.h"
#include "tests/support/memory_files.h"
#include "ui/headless/headless_shell.h"

namespace velk {

/// Hooks and lookups go to `events`, each after the number of its slot.
class RecordingHost final : public HostService {
 public:
  RecordingHost(Texts& events, MessageHandler messages)
      : events_(events), messages_(std::move(messages)) {}

  std::map<std::string, std::string, std::less<>> captions;  ///< those that differ from their key
  std::string failingKey;  ///< looking it up, or preparing that message, is error 429
  std::function<void(Form&)> onReady;
  bool hasMainWindow = false;

  void screenReady(Form& screen, bool flag) override {
    events_.push_back("1 " + screen.name() + (flag ? " true" : " false"));
    if (onReady) onReady(screen);
  }
  Value caption(std::string_view application, std::string_view category,
                std::string_view key) override {
    return look("2", {application, category, key});
  }
  void screenStarting(Form& screen) override { events_.push_back("3 " + screen.name()); }
  std::string captionText(std::string_view application, std::string_view category,
                          std::string_view key) override {
    return look("4", {application, category, key});
  }
  Value messageBox(std::string_view prompt, std::int32_t style,
                   std::optional<std::string_view> caption) override {
    return HeadlessHostService(messages_).messageBox(prompt, style, caption);
  }
  std::string messageText(std::string_view text, std::span<const Value>) override {
    checkKey(text);
    return std::string(text);
  }
  std::shared_ptr<HostMainWindow> mainWindow() override;

 private:
  void checkKey(std::string_view key) const;
  std::string look(const char* slot, const std::array<std::string_view, 3>& keys);
  Texts& events_;
  MessageHandler messages_;
};

struct TestWorld {
  /// Screens appear in `windows`, or headless.
  explicit TestWorld(FormShell* windows = nullptr);

  Texts messages;  ///< "host 64: prompt" or "box 16: prompt", with " [caption]" where there is one
  std::function<void()> onMessage;  ///< what the user does while a message is shown
  Texts events;                     ///< what the host was asked
  int hostCreations = 0;
  bool hostFails = false;

  MemoryFiles files;
  HeadlessDesktop desktop;  ///< in "/app", in 2008
  HeadlessShell shell;
  std::shared_ptr<RecordingHost> host;
  /// Knows every customer and vendor; the first transaction date is 1 April 2008.
  std::shared_ptr<FakeConnection> database = std::make_shared<FakeConnection>();
  Velk_ModOpnImp module;

  /// A screen, opened as the host opens it.
  using EntryPoint = decltype(&Velk_ClsOpnImp::ImportCustomerOpening);
  std::shared_ptr<ImportScreen> open(EntryPoint entry);
  std::shared_ptr<Velk_frmCustOpn_OpnImp> openCustomerScreen();
  /// The user browses to a file of this content and views it.
  void view(ImportScreen& screen, std::string_view content);

  std::string logPath() const;
  /// The whole error log with "\n" for line ends; empty when there is none.
  std::string log() const;

 private:
  void record(const Message& message);
};

/// The cells of a row, "|" between them, a "*" after bold ones; all rows of a list.
std::string rowText(const ListView& list, std::size_t row);
Texts rowsOf(const ListView& list);

}  // namespace velk
