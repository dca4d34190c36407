#include "apps/host/host_service_object.h"

#include <optional>
#include <string>
#include <utility>

#include "apps/host/host_output.h"
#include "apps/host/main_window.h"
#include "apps/host/vtable_object.h"
#include "base/text.h"
#include "platform/windows/named_members.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_desktop.h"

namespace velk {

namespace {

/// The main window, its control array cmdMainMenu, or one of the buttons in that: each has one
/// member, which leads to the next.
class MenuObject final : public NamedMembers {
 public:
  enum class Level { Window, Array, Button };

  MenuObject(MainWindow& window, Level level, int button = 0)
      : window_(window), level_(level), button_(button) {}

  DISPID idOf(std::string_view name) const override {
    static constexpr std::string_view members[] = {"cmdMainMenu", "Item", "SetFocus"};
    const bool own = equalsIgnoringCase(name, members[static_cast<std::size_t>(level_)]);
    if (!own) return DISPID_UNKNOWN;
    // Item is the default member, so that cmdMainMenu(0) means cmdMainMenu.Item(0).
    return level_ == Level::Array ? DISPID_VALUE : 1;
  }
  bool takesIndex(DISPID) const override { return level_ != Level::Button; }
  Variant get(DISPID, const std::optional<Value>& index) override {
    if (level_ == Level::Button) {
      window_.focusButton(button_);
      return {};
    }
    // Callers may ask for cmdMainMenu(0) in one call, which skips the array.
    if (index) return next(Level::Button, toInt32(*index));
    if (level_ == Level::Array) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
    return next(Level::Array);
  }

 private:
  Variant next(Level level, int button = 0) const {
    return Variant(makeObject<MenuObject>(window_, level, button).Get());
  }

  MainWindow& window_;
  Level level_;
  int button_;
};

class HostServiceObject final
    : public VtableObject<UnusedIDispatch, IVelkHostService, IVelkHostWindow> {
 public:
  explicit HostServiceObject(MainWindow& window) : window_(window) {}

  HRESULT STDMETHODCALLTYPE ScreenReady(IDispatch*, VARIANT_BOOL) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ScreenStarting(IDispatch*) noexcept override { return S_OK; }

  // The sample company translates nothing: the key itself is the caption.
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
      // An argument that the caller left out arrives as an error code.
      const bool isLeftOut = caption.vt == VT_ERROR;
      const std::string title = isLeftOut ? fromWide(hostTitle) : toText(toValue(caption));
      const std::int32_t pressed =
          desktop_.messageBox(Bstr::textOf(prompt), toInt32(toValue(style)), title);
      window_.refreshSoon();  // a message may be the end of an import
      return Variant(Value(pressed)).release();
    });
  }

  HRESULT STDMETHODCALLTYPE get_MainWindow(IDispatch** window) noexcept override {
    return give(window, [&]() -> IDispatch* {
      return makeObject<MenuObject>(window_, MenuObject::Level::Window).Detach();
    });
  }

 private:
  MainWindow& window_;
  WindowsDesktop desktop_;
};

}  // namespace

ComPtr<IVelkHostService> hostServiceObject(MainWindow& window) {
  return makeObject<HostServiceObject>(window);
}

}  // namespace velk
