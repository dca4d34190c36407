// Keys of the registry.
#pragma once

#include <windows.h>

#include <string>
#include <utility>

namespace velk {

/// An open key, closed at the end.
class RegistryKey {
 public:
  RegistryKey() = default;
  RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
  RegistryKey& operator=(RegistryKey&&) = delete;
  ~RegistryKey() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  HKEY get() const { return key_; }
  HKEY* receive() { return &key_; }

 private:
  HKEY key_ = nullptr;
};

}  // namespace velk
