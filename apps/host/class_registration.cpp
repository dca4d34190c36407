#include "apps/host/class_registration.h"

#include <utility>

namespace velk {

ClassRegistration::ClassRegistration(REFCLSID classId, ClassFactory::Make make) {
  const auto factory = makeObject<ClassFactory>(std::move(make));
  check(CoRegisterClassObject(classId, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                              &cookie_));
}

}  // namespace velk
