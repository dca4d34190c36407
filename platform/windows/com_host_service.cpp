#include "platform/windows/com_host_service.h"

#include <host_service_com.h>

#include "platform/windows/com_errors.h"
#include "platform/windows/late_binding.h"
#include "platform/windows/pending_input.h"
#include "platform/windows/screen_object.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

class ComHostMainWindow final : public HostMainWindow {
 public:
  explicit ComHostMainWindow(ComPtr<IVelkHostWindow> host) : host_(std::move(host)) {}

  // Late bound, because the window of a host has no interface that is known here.
  void focusMainMenu(int element) override {
    ComPtr<IDispatch> window;
    call(host_, &IVelkHostWindow::get_MainWindow, window.GetAddressOf());
    const auto menu = memberObject(window.Get(), "cmdMainMenu");
    const auto button = memberObject(menu.Get(), "Item", argumentList(element));
    callMember(button.Get(), "SetFocus", DISPATCH_METHOD);
  }

 private:
  ComPtr<IVelkHostWindow> host_;
};

class ComHostService final : public HostService {
 public:
  explicit ComHostService(ComPtr<IVelkHostService> service) : service_(std::move(service)) {}

  void screenReady(Form& screen, bool flag) override {
    call(service_, &IVelkHostService::ScreenReady, screenObject(screen).Get(), toVariantBool(flag));
  }

  Value caption(std::string_view application, std::string_view category,
                std::string_view key) override {
    Variant caption;
    call(service_, &IVelkHostService::Caption, Bstr(application).get(), Bstr(category).get(),
         Bstr(key).get(), caption.receive());
    return toValue(caption.get());
  }

  void screenStarting(Form& screen) override {
    call(service_, &IVelkHostService::ScreenStarting, screenObject(screen).Get());
  }

  std::string captionText(std::string_view application, std::string_view category,
                          std::string_view key) override {
    Bstr caption;
    call(service_, &IVelkHostService::CaptionText, Bstr(application).get(), Bstr(category).get(),
         Bstr(key).get(), caption.receive());
    return caption.text();
  }

  Value messageBox(std::string_view prompt, std::int32_t style,
                   std::optional<std::string_view> caption) override {
    // Left out is not the same as empty: then the host chooses the title.
    const Variant title = caption ? Variant(Value(std::string(*caption))) : Variant::missing();
    // For help file and context, which no message here has.
    const Variant missing = Variant::missing();
    Variant answer;
    dropPendingInput();  // it would dismiss the message unseen
    call(service_, &IVelkHostService::ShowMessage, Bstr(prompt).get(), Variant(Value(style)).get(),
         title.get(), missing.get(), missing.get(), answer.receive());
    return toValue(answer.get());
  }

  std::string messageText(std::string_view text, std::span<const Value> arguments) override {
    Variant list(arguments);
    SAFEARRAY* array = list.get().parray;  // by reference, yet it stays ours
    Bstr message;
    call(service_, &IVelkHostService::MessageText, Bstr(text).get(), &array, message.receive());
    return message.text();
  }

  std::shared_ptr<HostMainWindow> mainWindow() override {
    auto host = queryInterface<IVelkHostWindow>(service_.Get());
    // As for a late-bound member that the object does not have.
    if (!host) throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
    return std::make_shared<ComHostMainWindow>(std::move(host));
  }

 private:
  ComPtr<IVelkHostService> service_;
};

}  // namespace

std::shared_ptr<HostService> createComHostService() {
  // Null only if the class is not registered; a service that does not start is an error.
  auto service = createIfRegistered<IVelkHostService>(__uuidof(VelkHostService));
  if (!service) return nullptr;
  return std::make_shared<ComHostService>(std::move(service));
}

}  // namespace velk
