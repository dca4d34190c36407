// What keeps the program's module loaded.
#pragma once

namespace velk {

/// While one lives the module is in use; a DLL must not be unloaded then. Every COM object has one.
class ModuleLock {
 public:
  ModuleLock() { acquire(); }
  ~ModuleLock() { release(); }
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;

  /// For locks without an object.
  static void acquire();
  static void release();
};

bool moduleInUse();

}  // namespace velk
