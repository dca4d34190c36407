// ADO's command with its parameters.
#pragma once

#include <ole2.h>

#include "platform/windows/com_pointer.h"

namespace velk {

/// A new command. Its active connection is a connection object of this program.
ComPointer<IUnknown> commandObject();

}  // namespace velk
