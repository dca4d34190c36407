// Errors of COM calls, both ways, and the boundary that no exception crosses.
#pragma once

#include <ole2.h>

#include <string>
#include <utility>

#include "base/errors.h"
#include "platform/windows/com_pointer.h"
#include "platform/windows/floating_point.h"

namespace velk {

/// The runtime error for a failed HRESULT: the low word where the facility is that of
/// controls (0x800A....), else the HRESULT as a signed number. Without a description the error has
/// the standard one, or the system's.
RuntimeError comError(HRESULT result, std::string description = {});

/// The same, described by the error information that the failed call left in this thread.
RuntimeError lastComError(HRESULT result);

/// The HRESULT that carries a runtime error to a caller; comError takes it back to its number.
HRESULT toHresult(const RuntimeError& error);

/// Calls a member of an object and raises its failure. Error information of earlier calls is taken
/// away first, because objects without any would otherwise be described by it. Error 91 for null:
/// not every host's object gives what it says it has.
template <class Object, class Member, class... Arguments>
void call(const ComPtr<Object>& object, Member member, Arguments&&... arguments) {
  if (!object) throw RuntimeError(ErrorNumber::ObjectNotSet);
  SetErrorInfo(0, nullptr);
  const HRESULT result = (object.Get()->*member)(std::forward<Arguments>(arguments)...);
  if (FAILED(result)) throw lastComError(result);
}

/// Raises a failure that comes without error information.
inline void check(HRESULT result) {
  if (FAILED(result)) throw comError(result);
}

/// Makes an object of a registered class, in process or from a program of its own unless `where`
/// says otherwise; null when the class is not registered, error 429 for any other failure.
template <class Interface>
ComPtr<Interface> createIfRegistered(REFCLSID classId,
                                     DWORD where = CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER) {
  ComPtr<Interface> object;
  const HRESULT result =
      CoCreateInstance(classId, nullptr, where, IID_PPV_ARGS(object.GetAddressOf()));
  if (FAILED(result) && result != REGDB_E_CLASSNOTREG) {
    throw RuntimeError(ErrorNumber::CannotCreateObject);
  }
  return object;
}

/// The same, in process only; error 429 when the class is not registered, too.
template <class Interface>
ComPtr<Interface> createObject(REFCLSID classId) {
  auto object = createIfRegistered<Interface>(classId, CLSCTX_INPROC_SERVER);
  if (!object) throw RuntimeError(ErrorNumber::CannotCreateObject);
  return object;
}

/// The runtime error now being handled, whatever was thrown; for use in a catch block.
RuntimeError currentError();
/// Leaves the error as this thread's error information and returns its HRESULT.
HRESULT reportError(const RuntimeError& error, REFIID iid, const wchar_t* source);

/// Describes the error in a caller's EXCEPINFO (null: not wanted); DISP_E_EXCEPTION.
HRESULT fillIn(EXCEPINFO* exception, const RuntimeError& error);

/// Runs the body of a COM member; whatever it throws goes to `failed`, which gives the HRESULT.
template <class Body, class Failed>
HRESULT guarded(Body&& body, Failed&& failed) noexcept {
  const MaskedFloatingPoint masked;
  try {
    std::forward<Body>(body)();
    return S_OK;
  } catch (...) {
    try {
      return std::forward<Failed>(failed)(currentError());
    } catch (...) {  // no memory to describe it
      return E_OUTOFMEMORY;
    }
  }
}

}  // namespace velk
