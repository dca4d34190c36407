#include "apps/host/host_service_object.h"

#include <host_service_com.h>

#include <optional>
#include <string>
#include <utility>

#include "apps/host/main_window.h"
#include "apps/host/vtable_object.h"
#include "base/text.h"
#include "platform/windows/named_members.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_desktop.h"

namespace velk {

namespace {

class MenuButton final : public NamedMembers {
 public:
  MenuButton(MainWindow& window, int element) : window_(window), element_(element) {}

  DISPID idOf(std::string_view name) const override {
    return equalsIgnoringCase(name, "SetFocus") ? 1 : DISPID_UNKNOWN;
  }
  Variant get(DISPID, const std::optional<Value>&) override {
    window_.focusButton(element_);
    return {};
  }

 private:
  MainWindow& window_;
  int element_;
};

class MenuArray final : public NamedMembers {
 public:
  explicit MenuArray(MainWindow& window) : window_(window) {}

  DISPID idOf(std::string_view name) const override {
    return equalsIgnoringCase(name, "Item") ? DISPID_VALUE : DISPID_UNKNOWN;
  }
  Variant get(DISPID, const std::optional<Value>& index) override {
    if (!index) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
    return Variant(makeObject<MenuButton>(window_, toInt32(*index)).get());
  }

 private:
  MainWindow& window_;
};

class WindowObject final : public NamedMembers {
 public:
  explicit WindowObject(MainWindow& window) : window_(window) {}

  DISPID idOf(std::string_view name) const override {
    return equalsIgnoringCase(name, "cmdMainMenu") ? 1 : DISPID_UNKNOWN;
  }
  Variant get(DISPID, const std::optional<Value>& index) override {
    const auto array = makeObject<MenuArray>(window_);
    return index ? array->get(DISPID_VALUE, index) : Variant(array.get());
  }

 private:
  MainWindow& window_;
};

class HostServiceObject final
    : public VtableObject<UnusedIDispatch, IVelkHostService, IVelkHostWindow> {
 public:
  explicit HostServiceObject(MainWindow& window) : window_(window) {}

  HRESULT STDMETHODCALLTYPE ScreenReady(IDispatch*, VARIANT_BOOL) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ScreenStarting(IDispatch*) noexcept override { return S_OK; }

  HRESULT STDMETHODCALLTYPE Caption(BSTR, BSTR, BSTR key, VARIANT* caption) noexcept override {
    return give(caption, [&] { return Variant(Value(Bstr::textOf(key))).release(); });
  }
  HRESULT STDMETHODCALLTYPE CaptionText(BSTR, BSTR, BSTR key, BSTR* caption) noexcept override {
    return give(caption, [&] { return Bstr(Bstr::textOf(key)).release(); });
  }
  HRESULT STDMETHODCALLTYPE MessageText(BSTR text, SAFEARRAY**, BSTR* message) noexcept override {
    return give(message, [&] { return Bstr(Bstr::textOf(text)).release(); });
  }

  HRESULT STDMETHODCALLTYPE ShowMessage(BSTR prompt, VARIANT style, VARIANT caption, VARIANT,
                                        VARIANT, VARIANT* answer) noexcept override {
    return give(answer, [&] {
      const bool isLeftOut = caption.vt == VT_ERROR;
      const std::string title = isLeftOut ? fromWide(hostTitle) : toText(toValue(caption));
      const std::int32_t pressed =
          desktop_.messageBox(Bstr::textOf(prompt), toInt32(toValue(style)), title);
      window_.refreshSoon();  // a message may be the end of an import
      return Variant(Value(pressed)).release();
    });
  }

  HRESULT STDMETHODCALLTYPE get_MainWindow(IDispatch** window) noexcept override {
    return give(window,
                [&]() -> IDispatch* { return makeObject<WindowObject>(window_).release(); });
  }

 private:
  MainWindow& window_;
  WindowsDesktop desktop_;
};

}  // namespace

ComPointer<IUnknown> hostServiceObject(MainWindow& window) {
  auto* object = new HostServiceObject(window);
  return ComPointer<IUnknown>::adopt(static_cast<IVelkHostService*>(object));
}

}  // namespace velk
