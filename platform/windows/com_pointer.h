// Owns one reference to a COM object: WRL's ComPtr, and two helpers.
//
// Two members of mingw-w64's ComPtr differ from those of Windows' SDK and are not used here: Attach
// adds a reference instead of taking over the caller's, and an assignment from an rvalue leaves the
// other pointer as it was. Operator & lets go of what is held, as there; GetAddressOf does not.
#pragma once

#include <ole2.h>

#include <wrl/client.h>

namespace velk {

using Microsoft::WRL::ComPtr;

/// Takes over a reference that the caller holds.
template <class Interface>
ComPtr<Interface> adopt(Interface* object) {
  ComPtr<Interface> pointer;
  *pointer.GetAddressOf() = object;
  return pointer;
}

/// Another interface of an object; null when it has none, or for null. (ComPtr::As takes no null.)
template <class Interface>
ComPtr<Interface> queryInterface(IUnknown* object, REFIID iid = __uuidof(Interface)) {
  ComPtr<Interface> found;
  if (object != nullptr) {
    object->QueryInterface(iid, reinterpret_cast<void**>(found.GetAddressOf()));
  }
  return found;
}

}  // namespace velk
