// What the compiler's run-time needs of threads, made of what Windows has.
#pragma once

namespace velk {

/// Gives back what thread_local variables took, those of all threads. None may be used afterwards.
void freeThreadValues();

}  // namespace velk
