// Owns one reference to a COM object.
#pragma once

#include <ole2.h>

#include <utility>

namespace velk {

template <class Interface>
class ComPointer {
 public:
  ComPointer() = default;
  /// Takes over a reference that the caller holds.
  static ComPointer adopt(Interface* object) {
    ComPointer pointer;
    pointer.object_ = object;
    return pointer;
  }
  /// Adds a reference of its own; null is allowed.
  static ComPointer share(Interface* object) {
    if (object != nullptr) object->AddRef();
    return adopt(object);
  }
  ComPointer(const ComPointer& other) : ComPointer(share(other.object_)) {}
  ComPointer(ComPointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPointer& operator=(ComPointer other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPointer() {
    if (object_ != nullptr) object_->Release();
  }

  Interface* get() const { return object_; }
  Interface* operator->() const { return object_; }
  Interface& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }

  /// Lets go of what is held; a call puts a new reference here.
  Interface** receive() {
    *this = {};
    return &object_;
  }
  void** receiveAny() { return reinterpret_cast<void**>(receive()); }
  /// Hands the reference to the caller.
  Interface* release() { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

/// Another interface of an object; null when it has none, or for null.
template <class Interface>
ComPointer<Interface> queryInterface(IUnknown* object, REFIID iid = __uuidof(Interface)) {
  ComPointer<Interface> found;
  if (object != nullptr && FAILED(object->QueryInterface(iid, found.receiveAny()))) return {};
  return found;
}

}  // namespace velk
