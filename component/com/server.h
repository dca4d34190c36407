// The DLL itself: where it lies, and whether it is in use.
#pragma once

#include <string>

namespace velk {

/// Keeps the DLL loaded while it lives.
class ServerLock {
 public:
  ServerLock();
  ~ServerLock();
  ServerLock(const ServerLock&) = delete;
  ServerLock& operator=(const ServerLock&) = delete;

  /// The lock that IClassFactory::LockServer counts.
  static void acquire();
  static void release();
};

bool serverInUse();

/// Full path of the DLL's file.
std::wstring serverPath();

}  // namespace velk
