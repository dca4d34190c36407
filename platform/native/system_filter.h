// What a process may still ask of the system that is to compute only.
#pragma once

namespace velk {

/// From now on this process can get memory, read and write what is open, and end; all else is
/// refused with EPERM. Where the system has no such filter nothing changes.
void allowComputingOnly();

}  // namespace velk
