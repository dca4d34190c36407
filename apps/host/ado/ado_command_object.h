// ADO's command with its parameters.
#pragma once

#include <ado_com.h>

#include "platform/windows/com_pointer.h"

namespace velk {

/// A new command. Its active connection is a connection object of this program.
ComPtr<_Command> commandObject();

}  // namespace velk
