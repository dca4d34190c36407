// ADO's record set and its fields, over a record set of ours.
#pragma once

#include <ole2.h>

#include <ado_com.h>

#include <memory>

#include "platform/database.h"
#include "platform/windows/com_pointer.h"

namespace velk {

/// Null for null. Fields are found by their position only.
ComPtr<_Recordset> recordsetObject(std::shared_ptr<Recordset> rows);

}  // namespace velk
