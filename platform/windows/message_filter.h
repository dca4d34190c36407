// Patience with other programs that are busy, in place of the host's, which may ask the user.
#pragma once

#include <ole2.h>

#include "platform/windows/com_pointer.h"

namespace velk {

/// How long a busy program is asked again, all in all, and how often, in milliseconds.
inline constexpr DWORD busyPatience = 10'000;
inline constexpr DWORD busyPause = 200;

/// While it lives, calls of this thread that another program is too busy to take are made again
/// for `busyPatience`, then fail. Calls that come in go where they went before.
class PatientMessageFilter {
 public:
  PatientMessageFilter();
  ~PatientMessageFilter();
  PatientMessageFilter(const PatientMessageFilter&) = delete;
  PatientMessageFilter& operator=(const PatientMessageFilter&) = delete;

 private:
  ComPointer<IMessageFilter> previous_;
  bool registered_;
};

}  // namespace velk
