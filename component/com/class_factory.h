// Makes objects of the public class.
#pragma once

#include <ole2.h>

#include "component/com/server.h"
#include "platform/windows/com_object.h"

namespace velk {

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                           void** object) noexcept override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override;

 private:
  ServerLock lock_;
};

}  // namespace velk
