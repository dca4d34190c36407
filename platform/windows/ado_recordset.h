// ADO's record set object.
#pragma once

#include <memory>

#include "platform/database.h"
#include "platform/windows/ado_types.h"

namespace velk {

/// A record set over ADO's; null for null.
std::shared_ptr<Recordset> adoRecordset(ComPtr<_Recordset> rows);

}  // namespace velk
