// The DLL itself: where it lies, and whether it is in use.
#pragma once

#include <string>

namespace velk {

/// Keeps the DLL loaded while it lives.
class ServerLock {
 public:
  ServerLock() { acquire(); }
  ~ServerLock() { release(); }
  ServerLock(const ServerLock&) = delete;
  ServerLock& operator=(const ServerLock&) = delete;

  /// The lock that IClassFactory::LockServer counts.
  static void acquire();
  static void release();
};

bool serverInUse();

/// Lets the DLL hold a reference to itself: the end of COM in a host's thread unloads it without
/// asking, and a screen may be open. letGo, when the server is not in use and COM holds it, takes
/// the reference back; it never does so from code that returns into the DLL alone.
void keepLoaded();
void letGo();

/// Full path of the DLL's file.
std::wstring serverPath();

}  // namespace velk
