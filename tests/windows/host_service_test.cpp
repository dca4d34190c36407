#include "platform/windows/com_host_service.h"

#include "platform/windows/screen_object.h"
#include "tests/windows/server_dll.h"
#include "tests/windows/service_stub.h"
#include "ui/controls.h"
#include "ui/headless/headless_shell.h"

namespace velk {
namespace {

struct Screen final : Form {
  explicit Screen(FormShell& shell) : Form(shell, "frmTest", "Caption", {0, 0, 100, 200}) {}
  TextBox TxtFileName{*this, nullptr, "TxtFileName", {}};
  CommandButton cmdImport{*this, nullptr, "cmdImport", {}, "&Import"};
  void eventFailed(const RuntimeError&) noexcept override {}
};

TEST_CASE("the six operations of the host's service") {
  HeadlessShell shell;
  const auto screen = std::make_shared<Screen>(shell);
  const ServiceStub host;
  const auto service = createComHostService();
  REQUIRE(service != nullptr);
  service->screenStarting(*screen);
  service->screenReady(*screen, true);
  CHECK((service->caption("Vorel", "Label", "Not Yet") == Value("Caption Not Yet")));
  CHECK(service->captionText("a", "", "é") == "é");
  CHECK((service->messageBox("Done", 64) == Value(1)));
  service->messageBox("Done", 0, "Title");
  CHECK(service->messageText("text", {}) == "text");
  const Value list[] = {Value("x"), Value(2)};
  service->messageText("text", list);
  CHECK(ServiceStub::calls == Texts{"3 frmTest", "1 frmTest -1", "2 Vorel/Label/Not Yet", "4 a//é",
                                    "5 Done 64 - - -", "5 Done 0 Title - -", "6 text 0",
                                    "6 text 2"});
  CHECK(errorOf([&] { service->mainWindow(); }) == 438);
}

TEST_CASE("a host that is not registered, and one that fails") {
  CHECK(createComHostService() == nullptr);
  StubObject<IUnknown> other;
  const ClassRegistration registered(__uuidof(VelkHostService),
                                     [&] { return ComPtr<IUnknown>(other.get()); });
  CHECK(errorOf([] { createComHostService(); }) == 429);
}

TEST_CASE("a screen as the host reads it") {
  HeadlessShell shell;
  auto screen = std::make_shared<Screen>(shell);
  const auto object = screenObject(*screen);
  constexpr WORD read = DISPATCH_PROPERTYGET;
  const auto text = [](IDispatch* of, std::string_view name) {
    return toText(toValue(callMember(of, name, read).get()));
  };
  CHECK(text(object.Get(), "caption") == "Caption");
  callMember(object.Get(), "Caption", DISPATCH_PROPERTYPUT, argumentList("Other"));
  CHECK(screen->text(Property::Caption) == "Other");
  CHECK(text(memberObject(object.Get(), "CMDIMPORT").Get(), "Caption") == "&Import");
  const auto controls = memberObject(object.Get(), "Controls");
  CHECK(text(controls.Get(), "Count") == "2");
  for (const Value& key : {Value(0), Value("txtfilename")}) {
    CHECK(ServiceStub::nameOf(memberObject(controls.Get(), "Item", argumentList(key)).Get()) ==
          "TxtFileName");
  }
  CHECK(errorOf([&] { text(object.Get(), "BorderStyle"); }) == 438);
  const auto button = memberObject(object.Get(), "cmdImport");
  screen.reset();
  CHECK(errorOf([&] { text(object.Get(), "Caption"); }) == 91);
  CHECK(errorOf([&] { text(button.Get(), "Caption"); }) == 91);
}

}  // namespace
}  // namespace velk
