// A screen as an automation object, for the host.
#pragma once

#include <ole2.h>

#include "platform/windows/com_pointer.h"
#include "ui/form.h"

namespace velk {

/// Reads and writes the form's properties by their names, in any letter case, and gives its
/// controls, as objects of the same kind, by theirs. "Controls" is the collection of them: Count,
/// Item (the default member) by index from 0 or by name, and For Each. Both have Move and SetFocus,
/// the form Show, Hide and Icon, controls TabIndex and Font (Name, Size in points, Bold). SetFocus
/// is error 5 where the control is hidden or disabled. What is not there is error 438. The objects
/// do not keep the form alive: when it is gone every member is error 91.
ComPtr<IDispatch> screenObject(Form& form);

}  // namespace velk
