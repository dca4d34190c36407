// ADO's connection, over a connection of ours.
#pragma once

#include <ole2.h>

#include <ado_com.h>

#include <memory>

#include "platform/database.h"
#include "platform/windows/com_pointer.h"

namespace velk {

/// An ADO connection that is open already: State, Execute of a text and Close. Closed, it answers
/// every Execute with 3704.
ComPtr<_Connection> connectionObject(std::shared_ptr<Connection> connection);

/// The connection that a connection object of this program uses. Errors: 3709 when it is closed,
/// 3001 when it is null or the object of another library.
std::shared_ptr<Connection> connectionBehind(IUnknown* object);

}  // namespace velk
