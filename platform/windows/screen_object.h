// A screen as an automation object, for the host.
#pragma once

#include <ole2.h>

#include "platform/windows/com_pointer.h"
#include "ui/form.h"

namespace velk {

/// Reads and writes the form's properties by their names, in any letter case, and gives its
/// controls, as objects of the same kind, by theirs. "Controls" is the collection of them: Count,
/// and Item (the default member) by index from 0 or by name. The objects do not keep the form
/// alive: when it is gone every member is error 91.
ComPtr<IDispatch> screenObject(Form& form);

}  // namespace velk
