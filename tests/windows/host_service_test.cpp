#include "platform/windows/com_host_service.h"

#include <ocidl.h>
#include <olectl.h>

#include "platform/windows/screen_object.h"
#include "tests/windows/open_screen.h"
#include "tests/windows/seen_text.h"
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
  for (const char* none : {"BorderStyle", "Font", "TabIndex"}) {
    CHECK(errorOf([&] { text(object.Get(), none); }) == 438);
  }
  const auto button = memberObject(object.Get(), "cmdImport");
  screen.reset();
  CHECK(errorOf([&] { text(object.Get(), "Caption"); }) == 91);
  CHECK(errorOf([&] { text(button.Get(), "Caption"); }) == 91);
}

/// Whether an icon that the host sets through the object is the screen's, and comes back.
bool heldIcon(Form& screen, IDispatch* form) {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ICON;
  description.icon.hicon = LoadIconW(nullptr, IDI_WARNING);
  void* made = nullptr;
  REQUIRE(SUCCEEDED(OleCreatePictureIndirect(&description, IID_IPictureDisp, FALSE, &made)));
  const auto picture = adopt(static_cast<IDispatch*>(made));
  std::vector<Variant> icon;
  icon.emplace_back(picture.Get());
  callMember(form, "Icon", DISPATCH_PROPERTYPUT, icon);
  const LRESULT shown = SendMessageW(Window(screen).handle, WM_GETICON, ICON_BIG, 0);
  return reinterpret_cast<HICON>(shown) == description.icon.hicon &&
         memberObject(form, "Icon") == picture;
}

ComPtr<IEnumVARIANT> enumerated(IDispatch* collection) {
  DISPPARAMS none{};
  Variant result;
  REQUIRE(SUCCEEDED(collection->Invoke(DISPID_NEWENUM, IID_NULL, 0,
                                       DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                                       result.receive(), nullptr, nullptr)));
  auto items = queryInterface<IEnumVARIANT>(result.get().punkVal);
  REQUIRE(items);
  return items;
}

struct Step {
  enum { Next, Skip, Reset, Clone } act;
  ULONG count;
  HRESULT answer;
  Texts names;
};

/// The names that a step gives; `items` goes on as the step's copy where it makes one.
Texts namesAfter(const Step& step, ComPtr<IEnumVARIANT>& items) {
  VARIANT given[4]{};
  ULONG fetched = 0;
  ComPtr<IEnumVARIANT> copy;
  HRESULT answer = S_OK;
  switch (step.act) {
    case Step::Next:
      answer = items->Next(step.count, given, &fetched);
      break;
    case Step::Skip:
      answer = items->Skip(step.count);
      break;
    case Step::Reset:
      answer = items->Reset();
      break;
    case Step::Clone:
      answer = items->Clone(copy.GetAddressOf());
      std::swap(items, copy);
  }
  CHECK(answer == step.answer);
  Texts names;
  for (ULONG i = 0; i < fetched; ++i) {
    names.push_back(ServiceStub::nameOf(given[i].pdispVal));
    VariantClear(&given[i]);
  }
  return names;
}

TEST_CASE("For Each goes through the controls by any steps") {
  HeadlessShell shell;
  auto screen = std::make_shared<Screen>(shell);
  const auto object = screenObject(*screen);
  auto items = enumerated(memberObject(object.Get(), "Controls").Get());
  const Step steps[] = {{Step::Next, 1, S_OK, {"TxtFileName"}},
                        {Step::Clone, 0, S_OK, {}},
                        {Step::Next, 3, S_FALSE, {"cmdImport"}},
                        {Step::Next, 1, S_FALSE, {}},
                        {Step::Skip, 1, S_FALSE, {}},
                        {Step::Reset, 0, S_OK, {}},
                        {Step::Skip, 0, S_OK, {}},
                        {Step::Next, 2, S_OK, {"TxtFileName", "cmdImport"}},
                        {Step::Reset, 0, S_OK, {}},
                        {Step::Skip, 1, S_OK, {}},
                        {Step::Next, 1, S_OK, {"cmdImport"}}};
  for (const Step& step : steps) {
    CAPTURE(&step - steps);
    CHECK(namesAfter(step, items) == step.names);
  }
  CHECK(items->Next(1, nullptr, nullptr) == E_POINTER);
  CHECK(items->Clone(nullptr) == E_POINTER);
  items->Reset();
  screen.reset();
  VARIANT none{};
  ULONG fetched = 7;
  CHECK(FAILED(items->Next(1, &none, &fetched)));
  CHECK(fetched == 0);
  CHECK(items->Skip(1) == S_FALSE);
}

/// The names of what For Each goes through.
Texts namesOf(IDispatch* collection) {
  const auto items = enumerated(collection);
  Texts names;
  Variant item;
  while (items->Next(1, item.receive(), nullptr) == S_OK) {
    names.push_back(ServiceStub::nameOf(item.get().pdispVal));
  }
  return names;
}

/// What an object answers to the number that another one gave for a member.
std::int32_t errorOfNumber(IDispatch* asked, IDispatch* other, const char* name, WORD kind) {
  std::wstring wide = toWide(name);
  LPOLESTR names = wide.data();
  DISPID id = DISPID_UNKNOWN;
  REQUIRE(other->GetIDsOfNames(IID_NULL, &names, 1, 0, &id) == S_OK);
  VARIANT value{};
  value.vt = VT_I4;
  DISPPARAMS one{.rgvarg = &value, .rgdispidNamedArgs = nullptr, .cArgs = 1, .cNamedArgs = 0};
  DISPPARAMS none{};
  const bool isPut = kind == DISPATCH_PROPERTYPUT;
  Variant result;
  EXCEPINFO error{};
  const HRESULT answer =
      asked->Invoke(id, IID_NULL, 0, kind, isPut ? &one : &none, result.receive(), &error, nullptr);
  SysFreeString(error.bstrDescription);
  return answer == DISP_E_EXCEPTION ? HRESULT_CODE(error.scode) : 0;
}

TEST_CASE("windows: a host's hook arranges a screen as forms of the platform are arranged") {
  OpenScreen in;
  const auto call = [](IDispatch* of, const char* name, const std::vector<Variant>& with = {}) {
    return callMember(of, name, DISPATCH_METHOD, with);
  };
  const auto read = [](IDispatch* of, const char* name) {
    return toText(toValue(callMember(of, name, DISPATCH_PROPERTYGET).get()));
  };
  const auto write = [](IDispatch* of, const char* name, const Value& value) {
    callMember(of, name, DISPATCH_PROPERTYPUT, argumentList(value));
  };
  ComPtr<IDispatch> form;
  in.world.host->onReady = [&](Form& ready) {
    form = screenObject(ready);
    Texts all;
    for (const Control* control : ready.controls()) all.push_back(control->name());
    CHECK(namesOf(memberObject(form.Get(), "Controls").Get()) == all);
    const auto close = memberObject(form.Get(), "cmdExit");
    call(close.Get(), "Move", argumentList(1500, 7600, 2000));
    write(close.Get(), "Tag", "mine");
    write(close.Get(), "TabIndex", 0);
    callMember(memberObject(close.Get(), "Font").Get(), "Bold", DISPATCH_PROPERTYPUT,
               argumentList(true));
    write(memberObject(close.Get(), "Font").Get(), "Name", "Courier New");
    write(memberObject(form.Get(), "CmdBrowse").Get(), "Enabled", 0);
    call(form.Get(), "Hide");
  };
  in.open(customerScreen);
  const HWND window = in.window.handle;
  CHECK(IsWindowVisible(window) == FALSE);
  call(form.Get(), "Show");
  CHECK(IsWindowVisible(window) != FALSE);
  const HWND button = in.window.button("C&lose");
  RECT place{};
  GetWindowRect(button, &place);
  MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
  CHECK(place.left == 100);
  CHECK(place.right == 233);
  CHECK(faceOf(button) == "Courier New");
  const auto close = memberObject(form.Get(), "cmdExit");
  CHECK(read(memberObject(close.Get(), "Font").Get(), "Bold") == "True");
  CHECK(read(close.Get(), "Tag") == "mine");
  CHECK(read(close.Get(), "TabIndex") == "0");
  for (const char* member : {"Caption", "Visible", "cmdExit", "Icon"}) {
    CAPTURE(member);
    const auto indexed = [&] {
      callMember(form.Get(), member, DISPATCH_PROPERTYGET, argumentList(1));
    };
    CHECK(errorOf(indexed) == 450);
  }
  CHECK(GetNextDlgTabItem(window, nullptr, FALSE) == button);
  CHECK(IsWindowEnabled(in.window.button("&Browse")) == FALSE);
  call(close.Get(), "SetFocus");
  CHECK(GetFocus() == button);
  CHECK(errorOf([&] { call(memberObject(form.Get(), "CmdBrowse").Get(), "SetFocus"); }) == 5);
  write(form.Get(), "Enabled", 0);
  CHECK(IsWindowEnabled(window) == FALSE);
  CHECK(heldIcon(*in.screen, form.Get()));
  for (const char* none : {"ZOrder", "hDC", "Line"}) {
    CHECK(errorOf([&] { call(form.Get(), none); }) == 438);
  }
  CHECK(errorOf([&] { call(close.Get(), "Hide"); }) == 438);
  CHECK(errorOf([&] { read(memberObject(form.Get(), "subclr").Get(), "TabIndex"); }) == 438);
  CHECK(errorOf([&] { read(memberObject(close.Get(), "Font").Get(), "Weight"); }) == 438);
  const auto menu = memberObject(form.Get(), "subclr");
  constexpr WORD get = DISPATCH_PROPERTYGET;
  const struct {
    IDispatch* asked;
    IDispatch* other;
    const char* name;
    WORD kind;
  } rows[] = {{form.Get(), close.Get(), "TabIndex", DISPATCH_PROPERTYPUT},
              {form.Get(), close.Get(), "TabIndex", get},
              {form.Get(), close.Get(), "Font", get},
              {menu.Get(), close.Get(), "TabIndex", get},
              {close.Get(), form.Get(), "Icon", get},
              {close.Get(), form.Get(), "Hide", DISPATCH_METHOD},
              {close.Get(), form.Get(), "Controls", get}};
  for (const auto& row : rows) {
    CAPTURE(row.name);
    CHECK(errorOfNumber(row.asked, row.other, row.name, row.kind) == 438);
  }
  CHECK(IsWindowVisible(window) != FALSE);
}

}  // namespace
}  // namespace velk
