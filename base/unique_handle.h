// Owns one handle of an outside system, whatever kind it is of.
#pragma once

#include <utility>

namespace velk {

/// `Kind` says what is owned:
///   using Handle = ...;               the handle's type
///   static Handle none();             the value that means no handle
///   static void close(Handle handle); gives a handle back; never called with none()
/// An alias names each kind beside the code that uses it.
template <class Kind>
class UniqueHandle {
 public:
  using Handle = typename Kind::Handle;

  UniqueHandle() = default;
  explicit UniqueHandle(Handle handle) noexcept : handle_(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    reset(other.release());
    return *this;
  }
  ~UniqueHandle() { reset(); }

  Handle get() const { return handle_; }
  explicit operator bool() const { return handle_ != Kind::none(); }
  /// Hands the handle to the caller, who closes it.
  Handle release() { return std::exchange(handle_, Kind::none()); }
  /// Takes another handle and closes the one before.
  void reset(Handle handle = Kind::none()) {
    const Handle before = std::exchange(handle_, handle);
    if (before != Kind::none()) Kind::close(before);
  }

 private:
  Handle handle_ = Kind::none();
};

}  // namespace velk
