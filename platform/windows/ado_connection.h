// The database, over a connection that the host opened with ADO.
#pragma once

#include <ole2.h>

#include <memory>

#include "platform/database.h"

namespace velk {

/// A connection that uses this ADO connection object as it is, open or closed; null for null.
/// Error 13 for an object that is no ADO connection.
std::shared_ptr<Connection> adoConnection(IUnknown* object);

}  // namespace velk
