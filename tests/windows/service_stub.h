// Takes the place of the host's service object: keeps the calls, answers them, and fails where told
// to.
#pragma once

#include <host_service_com.h>

#include "apps/host/class_registration.h"
#include "platform/windows/late_binding.h"
#include "platform/windows/variants.h"
#include "tests/windows/stub_object.h"

namespace velk {

class ServiceStub : public StubObject<IVelkHostService> {
 public:
  static inline Texts calls;
  static inline int failing = 0;  ///< the operation that fails, 1 to 6

  ServiceStub() {
    calls.clear();
    failing = 0;
    using Service = IVelkHostService;
    on(&Service::ScreenReady, [](void*, IDispatch* screen, VARIANT_BOOL flag) {
      return note(1, nameOf(screen) + " " + std::to_string(flag));
    });
    on(&Service::Caption, [](void*, BSTR application, BSTR category, BSTR key, VARIANT* caption) {
      *caption = Variant(Value("Caption " + Bstr::textOf(key))).release();
      return note(2, keyText(application, category, key));
    });
    on(&Service::ScreenStarting, [](void*, IDispatch* screen) { return note(3, nameOf(screen)); });
    on(&Service::CaptionText, [](void*, BSTR application, BSTR category, BSTR key, BSTR* caption) {
      *caption = SysAllocString(key);
      return note(4, keyText(application, category, key));
    });
    on(&Service::ShowMessage, [](void*, BSTR prompt, VARIANT style, VARIANT caption, VARIANT file,
                                 VARIANT context, VARIANT* answer) {
      std::string text = Bstr::textOf(prompt);
      for (const VARIANT& given : {style, caption, file, context}) {
        const bool isMissing = given.vt == VT_ERROR && given.scode == DISP_E_PARAMNOTFOUND;
        text += isMissing ? " -" : " " + toText(toValue(given));
      }
      *answer = Variant(Value(1)).release();
      return note(5, text);
    });
    on(&Service::MessageText, [](void*, BSTR text, SAFEARRAY** list, BSTR* message) {
      *message = SysAllocString(text);
      return note(6, Bstr::textOf(text) + " " + std::to_string((*list)->rgsabound[0].cElements));
    });
  }

  static std::string nameOf(IDispatch* screen) {
    return toText(toValue(callMember(screen, "Name", DISPATCH_PROPERTYGET).get()));
  }

 private:
  static std::string keyText(BSTR application, BSTR category, BSTR key) {
    return Bstr::textOf(application) + "/" + Bstr::textOf(category) + "/" + Bstr::textOf(key);
  }
  static HRESULT note(int operation, const std::string& given) {
    calls.push_back(std::to_string(operation) + " " + given);
    return operation == failing ? E_FAIL : S_OK;
  }

  ClassRegistration registered_{__uuidof(VelkHostService),
                                [this] { return ComPtr<IUnknown>(get()); }};
};

}  // namespace velk
