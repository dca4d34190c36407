// ADO's command object.
#pragma once

#include <memory>

#include "platform/database.h"
#include "platform/windows/ado_types.h"

namespace velk {

/// A new ADODB.Command whose active connection is this one. Error 429 when it can't be created, and
/// what ADO says when it refuses the connection (3709 for a closed one).
std::unique_ptr<Command> adoCommand(const ComPtr<_Connection>& connection);

}  // namespace velk
