// A control's font as an automation object.
#pragma once

#include <ole2.h>

#include <memory>

#include "platform/windows/com_pointer.h"
#include "ui/form.h"

namespace velk {

/// Name, Size in points and Bold, which are the control's own properties.
ComPtr<IDispatch> fontObject(std::weak_ptr<Form> form, Control& control);

}  // namespace velk
