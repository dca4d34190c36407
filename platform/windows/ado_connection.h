// The database, over a connection that the host opened with ADO.
#pragma once

#include <ole2.h>

#include <ado_com.h>

#include <memory>

#include "platform/database.h"
#include "platform/windows/com_pointer.h"

namespace velk {

/// Interface ids that newer versions of ADO gave to the same members; an object may answer to them
/// only.
inline constexpr IID newerConnectionId = {
    0x00001550, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
inline constexpr IID newerCommandId = {
    0x986761E8, 0x7269, 0x4890, {0xAA, 0x65, 0xAD, 0x7C, 0x03, 0x69, 0x7A, 0x6D}};

/// A connection that uses this ADO connection object as it is, open or closed; null for null.
/// Error 13 for an object that is no ADO connection.
std::shared_ptr<Connection> adoConnection(IUnknown* object);

/// A record set over ADO's; null for null.
std::shared_ptr<Recordset> adoRecordset(ComPtr<_Recordset> rows);

}  // namespace velk
