#include "tests/support/test_world.h"

#include "platform/spreadsheet/xls/xls_spreadsheet.h"

namespace velk {

namespace {

struct RecordingMainWindow final : HostMainWindow {
  explicit RecordingMainWindow(Texts& e) : events(e) {}
  void focusMainMenu(int element) override { events.push_back("menu " + std::to_string(element)); }
  Texts& events;
};

}  // namespace

void RecordingHost::checkKey(std::string_view key) const {
  if (!failingKey.empty() && key == failingKey) throw RuntimeError(ErrorNumber::CannotCreateObject);
}

std::string RecordingHost::look(const char* slot, const std::array<std::string_view, 3>& keys) {
  std::string& event = events_.emplace_back(slot);
  for (const std::string_view key : keys) event.append("/").append(key);
  checkKey(keys[2]);
  const auto found = captions.find(keys[2]);
  return found == captions.end() ? std::string(keys[2]) : found->second;
}

std::shared_ptr<HostMainWindow> RecordingHost::mainWindow() {
  if (!hasMainWindow) return HeadlessHostService(messages_).mainWindow();
  return std::make_shared<RecordingMainWindow>(events_);
}

TestWorld::TestWorld(FormShell* windows)
    : desktop(
          "/app",
          [] {
            return dateFromCivil({2008, 6, 15});
          },
          [this](const Message& message) { record(message); }),
      host(std::make_shared<RecordingHost>(events, [this](const Message& m) { record(m); })),
      module({.files = files,
              .desktop = desktop,
              .shell = windows == nullptr ? shell : *windows,
              .codePage = CodePage::windows1252(),
              .createHostService = [this]() -> std::shared_ptr<HostService> {
                ++hostCreations;
                if (hostFails) throw RuntimeError(ErrorNumber::CannotCreateObject);
                return host;
              },
              .createSpreadsheet = [this] { return std::make_unique<XlsSpreadsheet>(files); }}) {
  database->answerRows("Select * From ColorSettings", {});
  database->answerRows("SELECT TOP 1 OpeningDate FROM Setup", {{dateFromCivil({2008, 4, 1})}});
  database->answerRows("select count(*) from Customer where CustomerID=N'", {{1}});
  database->answerRows("select count(*) from Vendors where VendorID='", {{1}});
}

void TestWorld::record(const Message& m) {
  messages.push_back((m.throughHost ? "host " : "box ") + std::to_string(m.style) + ": " +
                     m.prompt + (m.caption ? " [" + *m.caption + "]" : std::string()));
  if (onMessage) onMessage();
}

std::shared_ptr<ImportScreen> TestWorld::open(EntryPoint entry) {
  Velk_ClsOpnImp component(module);
  (component.*entry)(database, nullptr);
  return std::dynamic_pointer_cast<ImportScreen>(shell.open().back());
}

std::shared_ptr<Velk_frmCustOpn_OpnImp> TestWorld::openCustomerScreen() {
  return std::dynamic_pointer_cast<Velk_frmCustOpn_OpnImp>(
      open(&Velk_ClsOpnImp::ImportCustomerOpening));
}

void TestWorld::view(ImportScreen& screen, std::string_view content) {
  files.contents["in.csv"] = content;
  desktop.chooseFile("in.csv");
  screen.CmdBrowse.userClick();
  screen.cmdview.userClick();
}

std::string TestWorld::logPath() const {
  return std::string("/app") + pathSeparator + "Error.log";
}

std::string TestWorld::log() const {
  const auto found = files.contents.find(logPath());
  std::string text = found == files.contents.end() ? std::string() : found->second;
  for (auto at = text.find("\r\n"); at != text.npos; at = text.find("\r\n", at)) text.erase(at, 1);
  return text;
}

std::string rowText(const ListView& list, std::size_t row) {
  std::string text;
  for (std::size_t column = 0; column < list.columnCount(); ++column) {
    if (column > 0) text += '|';
    text.append(list.cell(row, column)).append(list.isBold(row, column) ? "*" : "");
  }
  return text;
}

Texts rowsOf(const ListView& list) {
  Texts rows;
  for (std::size_t row = 1; row <= list.rowCount(); ++row) rows.push_back(rowText(list, row));
  return rows;
}

}  // namespace velk
