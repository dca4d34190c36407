// The demonstration host as a process that the tour starts and ends, and the display that it finds.
#pragma once

#include <windows.h>
#include <string>

#include "tests/tour/handles.h"

namespace velk {

class HostProcess {
 public:
  /// Starts the program. Error 53 when the system does not start it.
  HostProcess(const std::wstring& program, const std::wstring& arguments);
  /// Ends the process if it still runs, whatever it shows.
  ~HostProcess();
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  DWORD id() const { return id_; }
  /// Waits for the process, which was told to end. Error 5 when it goes on beyond all patience, or
  /// ends with another status.
  void waitForEnd(DWORD expected = 0) const;

 private:
  UniqueKernelObject process_;
  DWORD id_ = 0;
};

inline constexpr int usualDotsPerInch = 96;

/// The display's dots per inch for programs that start while this lives; then the usual ones again.
class DisplayScale {
 public:
  /// Error 57 when the setting cannot be made.
  explicit DisplayScale(int dotsPerInch);
  ~DisplayScale();
  DisplayScale(const DisplayScale&) = delete;
  DisplayScale& operator=(const DisplayScale&) = delete;
};

}  // namespace velk
