// A form's collection of controls as an automation object.
#pragma once

#include <ole2.h>

#include <memory>
#include <string_view>

#include "platform/windows/com_pointer.h"
#include "platform/windows/controls_enumerator.h"
#include "platform/windows/named_members.h"
#include "ui/form.h"

namespace velk {

/// The position of the control of that name, in any letter case; the number of controls where there
/// is none.
std::size_t positionOf(const Form& form, std::string_view name);

/// Count, Item (the default member) by index from 0 or by name, and For Each. Errors: 9 for an
/// index, 438 for a name that no control has.
ComPtr<NamedMembers> controlsObject(std::weak_ptr<Form> form, MakeControlObject make);

}  // namespace velk
