// Classes that this program serves to code in its own process, without the registry.
#pragma once

#include <ole2.h>

#include <utility>

#include "platform/windows/class_factory.h"

namespace velk {

/// CoCreateInstance finds the class as long as this lives. Error: what COM says when it refuses.
class ClassRegistration {
 public:
  ClassRegistration(REFCLSID classId, ClassFactory::Make make) {
    const auto factory = makeObject<ClassFactory>(std::move(make));
    check(CoRegisterClassObject(classId, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                &cookie_));
  }
  ~ClassRegistration() { CoRevokeClassObject(cookie_); }
  ClassRegistration(const ClassRegistration&) = delete;
  ClassRegistration& operator=(const ClassRegistration&) = delete;

 private:
  DWORD cookie_ = 0;
};

}  // namespace velk
