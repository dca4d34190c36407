// The COM object of the public class.
#pragma once

#include <ole2.h>

#include "platform/windows/com_pointer.h"

namespace velk {

/// A new one, in the calling thread's apartment.
ComPtr<IUnknown> clsOpnImpObject();

}  // namespace velk
