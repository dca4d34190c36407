// What For Each goes through.
#pragma once

#include <ole2.h>

#include <memory>

#include "platform/windows/com_pointer.h"
#include "ui/form.h"

namespace velk {

/// Makes the automation object of a control.
using MakeControlObject = ComPtr<IDispatch> (*)(const std::weak_ptr<Form>&, Control&);

/// The form's controls in their order. Error 91 when the form is gone.
ComPtr<IEnumVARIANT> controlsEnumerator(std::weak_ptr<Form> form, MakeControlObject make);

}  // namespace velk
