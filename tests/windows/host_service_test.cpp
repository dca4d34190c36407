#include "platform/windows/com_host_service.h"

#include <host_service_com.h>

#include "platform/controls.h"
#include "platform/headless/headless.h"
#include "platform/windows/late_binding.h"
#include "platform/windows/screen_object.h"
#include "tests/windows/class_objects.h"
#include "tests/windows/server_dll.h"
#include "tests/windows/stub_object.h"

namespace velk {
namespace {

Texts events;

std::string keyText(BSTR application, BSTR category, BSTR key) {
  return Bstr::textOf(application) + "/" + Bstr::textOf(category) + "/" + Bstr::textOf(key);
}

std::string nameOf(IDispatch* screen) {
  return toText(toValue(callMember(screen, "Name", DISPATCH_PROPERTYGET).get()));
}

void fill(StubObject<IVelkHostService>& host) {
  events.clear();
  host.on(&IVelkHostService::ScreenReady, [](void*, IDispatch* screen, VARIANT_BOOL flag) {
    events.push_back("1 " + nameOf(screen) + " " + std::to_string(flag));
    return S_OK;
  });
  host.on(&IVelkHostService::Caption,
          [](void*, BSTR application, BSTR category, BSTR key, VARIANT* caption) {
            *caption = Variant(Value("2 " + keyText(application, category, key))).release();
            return S_OK;
          });
  host.on(&IVelkHostService::ScreenStarting, [](void*, IDispatch* screen) {
    events.push_back("3 " + nameOf(screen));
    return S_OK;
  });
  host.on(&IVelkHostService::CaptionText,
          [](void*, BSTR application, BSTR category, BSTR key, BSTR* caption) {
            *caption = Bstr("4 " + keyText(application, category, key)).release();
            return S_OK;
          });
  host.on(&IVelkHostService::ShowMessage, [](void*, BSTR prompt, VARIANT style, VARIANT caption,
                                             VARIANT file, VARIANT context, VARIANT* answer) {
    const bool plain = caption.vt == VT_ERROR && caption.scode == DISP_E_PARAMNOTFOUND;
    events.push_back("5 " + Bstr::textOf(prompt) + " " + toText(toValue(style)) + " " +
                     (plain ? "-" : toText(toValue(caption))) +
                     (file.vt == VT_ERROR && context.vt == VT_ERROR ? "" : " help"));
    *answer = Variant(Value(1)).release();
    return S_OK;
  });
  host.on(&IVelkHostService::MessageText, [](void*, BSTR text, SAFEARRAY** list, BSTR* message) {
    const ULONG count = (*list)->rgsabound[0].cElements;
    *message = Bstr("6 " + Bstr::textOf(text) + " " + std::to_string(count)).release();
    return S_OK;
  });
}

struct Screen final : Form {
  explicit Screen(FormShell& shell) : Form(shell, "frmTest", "Caption", {0, 0, 100, 200}) {}
  TextBox TxtFileName{*this, nullptr, "TxtFileName", {}};
  CommandButton cmdImport{*this, nullptr, "cmdImport", {}, "&Import"};
  void eventFailed(const RuntimeError&) noexcept override {}
};

TEST_CASE("the six operations of the host's service") {
  StubObject<IVelkHostService> host;
  fill(host);
  HeadlessShell shell;
  const auto screen = std::make_shared<Screen>(shell);
  const ClassObject registered(serviceClass, host.get());
  const auto service = createComHostService();
  REQUIRE(service != nullptr);
  service->screenStarting(*screen);
  service->screenReady(*screen, true);
  CHECK((service->caption("Vorel", "Label", "Not Yet") == Value("2 Vorel/Label/Not Yet")));
  CHECK(service->captionText("a", "", "é") == "4 a//é");
  CHECK((service->messageBox("Done", 64) == Value(1)));
  service->messageBox("Done", 0, "Title");
  CHECK(service->messageText("text", {}) == "6 text 0");
  const Value list[] = {Value("x"), Value(2)};
  CHECK(service->messageText("text", list) == "6 text 2");
  CHECK(events == Texts{"3 frmTest", "1 frmTest -1", "5 Done 64 -", "5 Done 0 Title"});
  CHECK(errorOf([&] { service->mainWindow(); }) == 438);
  host.on(&IVelkHostService::ScreenStarting, [](void*, IDispatch*) { return E_FAIL; });
  CHECK(errorOf([&] { service->screenStarting(*screen); }) == E_FAIL);
}

TEST_CASE("a host that is not registered, and one that fails") {
  CHECK(createComHostService() == nullptr);
  StubObject<IUnknown> other;
  const ClassObject registered(serviceClass, other.get());
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
  CHECK(text(object.get(), "caption") == "Caption");
  std::vector<Variant> changed;
  changed.emplace_back(Value("Other"));
  callMember(object.get(), "Caption", DISPATCH_PROPERTYPUT, std::move(changed));
  CHECK(screen->text("Caption") == "Other");
  CHECK(text(memberObject(object.get(), "CMDIMPORT").get(), "Caption") == "&Import");
  const auto controls = memberObject(object.get(), "Controls");
  CHECK(text(controls.get(), "Count") == "2");
  for (const Value& key : {Value(0), Value("txtfilename")}) {
    std::vector<Variant> index;
    index.emplace_back(key);
    CHECK(nameOf(memberObject(controls.get(), "Item", std::move(index)).get()) == "TxtFileName");
  }
  CHECK(errorOf([&] { text(object.get(), "BorderStyle"); }) == 438);
  const auto button = memberObject(object.get(), "cmdImport");
  screen.reset();
  CHECK(errorOf([&] { text(object.get(), "Caption"); }) == 91);
  CHECK(errorOf([&] { text(button.get(), "Caption"); }) == 91);
}

}  // namespace
}  // namespace velk
