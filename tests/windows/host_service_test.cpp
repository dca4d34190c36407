#include "platform/windows/com_host_service.h"

#include "tests/windows/service_stub.h"
#include "ui/form.h"
#include "ui/headless/headless_shell.h"

namespace velk {
namespace {

struct Screen final : Form {
  explicit Screen(FormShell& shell) : Form(shell, "frmTest", "Caption", {0, 0, 100, 200}) {}
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

}  // namespace
}  // namespace velk
