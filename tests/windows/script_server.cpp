// What a host that is a script takes from this in-process server: the demonstration host's ADO
// objects, which answer to names here, and a service object that hands the hooks on to the script.
#include <dispex.h>
#include <host_service_com.h>
#include <olectl.h>

#include <algorithm>
#include <iterator>
#include <ranges>

#include "apps/host/ado/ado_command_object.h"
#include "apps/host/ado/ado_connection_object.h"
#include "apps/host/vtable_object.h"
#include "base/text.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/windows/class_factory.h"
#include "platform/windows/late_binding.h"
#include "platform/windows/named_members.h"
#include "platform/windows/wide_text.h"
#include "tests/windows/script_server.h"

namespace velk {
namespace {

/// Has members for the script; asked for an interface, it gives that of the object behind it.
class ScriptObject : public NamedMembers {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
    const HRESULT own = NamedMembers::QueryInterface(iid, object);
    return own == E_NOINTERFACE && behind_ ? behind_->QueryInterface(iid, object) : own;
  }
  DISPID idOf(std::string_view name) const override {
    const auto found = std::ranges::find_if(
        names_, [&](const char* own) { return equalsIgnoringCase(own, name); });
    return found == names_.end() ? DISPID_UNKNOWN : static_cast<DISPID>(found - names_.begin());
  }

 protected:
  explicit ScriptObject(std::vector<const char*> names) : names_(std::move(names)) {}
  ComPtr<IUnknown> behind_;

 private:
  std::vector<const char*> names_;
};

class ScriptConnection final : public ScriptObject {
 public:
  ScriptConnection() : ScriptObject({"Open", "Close", "State"}) {}

  bool isMethod(DISPID member) const override { return member < 2; }
  void call(DISPID member, std::span<const Value> arguments) override {
    if (member == 1) return velk::call(connection_, &_Connection::Close);
    connection_ = connectionObject(openOdbc(toText(arguments[0])));
    behind_ = connection_;
  }
  Variant get(DISPID, const std::optional<Value>&) override {
    LONG state = stateClosed;
    if (connection_) velk::call(connection_, &_Connection::get_State, &state);
    return Variant(Value(static_cast<std::int32_t>(state)));
  }

 private:
  ComPtr<_Connection> connection_;
};

/// Hands each call on to the member of that name of the script's object.
class HookService final : public VtableObject<UnusedIDispatch, IVelkHostService> {
 public:
  ComPtr<IDispatchEx> handler;

  HRESULT STDMETHODCALLTYPE ScreenReady(IDispatch* screen, VARIANT_BOOL flag) noexcept override {
    return run([&] { ask("ScreenReady", screen, flag != VARIANT_FALSE); });
  }
  HRESULT STDMETHODCALLTYPE ScreenStarting(IDispatch* screen) noexcept override {
    return run([&] { ask("ScreenStarting", screen); });
  }
  HRESULT STDMETHODCALLTYPE Caption(BSTR application, BSTR category, BSTR key,
                                    VARIANT* caption) noexcept override {
    return give(caption, [&] { return askText(application, category, key).release(); });
  }
  HRESULT STDMETHODCALLTYPE CaptionText(BSTR application, BSTR category, BSTR key,
                                        BSTR* caption) noexcept override {
    return give(caption, [&] {
      return Bstr(toText(toValue(askText(application, category, key).get()))).release();
    });
  }
  HRESULT STDMETHODCALLTYPE ShowMessage(BSTR prompt, VARIANT style, VARIANT, VARIANT, VARIANT,
                                        VARIANT* answer) noexcept override {
    return give(answer,
                [&] { return ask("ShowMessage", Bstr::textOf(prompt), toValue(style)).release(); });
  }
  HRESULT STDMETHODCALLTYPE MessageText(BSTR text, SAFEARRAY**, BSTR* message) noexcept override {
    return give(message, [&] { return Bstr(Bstr::textOf(text)).release(); });
  }

 private:
  // By IDispatchEx: not every script engine answers GetIDsOfNames for a class of the script.
  template <class... Arguments>
  Variant ask(const char* member, Arguments&&... arguments) const {
    const auto given = argumentList(std::forward<Arguments>(arguments)...);
    std::vector<VARIANT> passed;  // the last one first; plain copies
    std::ranges::transform(given | std::views::reverse, std::back_inserter(passed), &Variant::get);
    DISPPARAMS parameters{passed.data(), nullptr, static_cast<UINT>(passed.size()), 0};
    DISPID id = DISPID_UNKNOWN;
    velk::call(handler, &IDispatchEx::GetDispID, Bstr(member).get(), DWORD{fdexNameCaseInsensitive},
               &id);
    Variant result;
    velk::call(handler, &IDispatchEx::InvokeEx, id, programLocale, WORD{DISPATCH_METHOD},
               &parameters, result.receive(), nullptr, nullptr);
    return result;
  }
  Variant askText(BSTR application, BSTR category, BSTR key) const {
    return ask("CaptionText", Bstr::textOf(application), Bstr::textOf(category), Bstr::textOf(key));
  }
};

/// The script writes Handler and reads Picture, an icon: not every script engine can load one.
class ScriptService final : public ScriptObject {
 public:
  ScriptService() : ScriptObject({"Handler", "Picture"}) {
    behind_ = ComPtr<IVelkHostService>(hooks_);
    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_ICON;
    description.icon.hicon = LoadIconW(nullptr, IDI_INFORMATION);
    check(OleCreatePictureIndirect(&description, IID_IPictureDisp, FALSE,
                                   reinterpret_cast<void**>(picture_.GetAddressOf())));
  }
  Variant get(DISPID, const std::optional<Value>&) override { return Variant(picture_.Get()); }
  void putObject(DISPID, IUnknown* handler) override {
    hooks_->handler = queryInterface<IDispatchEx>(handler);
  }

 private:
  ComPtr<HookService> hooks_ = makeObject<HookService>();
  ComPtr<IDispatch> picture_;
};

ComPtr<IUnknown> makeOf(REFCLSID classId) {
  // One, which the script has given its handler; never let go, as its process ends with the script.
  static IDispatch* const service = makeObject<ScriptService>().Detach();
  if (classId == __uuidof(VelkHostService)) return ComPtr<IUnknown>(service);
  if (classId == scriptConnectionClass) return makeObject<ScriptConnection>();
  if (classId == scriptCommandClass) return commandObject();
  return {};
}

}  // namespace
}  // namespace velk

// It stays loaded: a script ends with its process.
STDAPI DllCanUnloadNow() {
  return S_FALSE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  const CLSID asked = classId;
  return velk::guarded(
      [&] {
        velk::check(velk::makeObject<velk::ClassFactory>([asked] {
                      return velk::makeOf(asked);
                    })->QueryInterface(iid, object));
      },
      velk::toHresult);
}
