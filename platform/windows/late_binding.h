// Members of automation objects called by their names.
#pragma once

#include <ole2.h>

#include <string_view>
#include <vector>

#include "platform/windows/com_pointer.h"
#include "platform/windows/variants.h"

namespace velk {

/// Calls a member, with arguments in their order, as the kind given (DISPATCH_METHOD,
/// DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT or several). Error 438 where there is no such member,
/// 91 for a null object; an error that the member raised keeps its number and description.
Variant callMember(IDispatch* object, std::string_view name, WORD kind,
                   const std::vector<Variant>& arguments = {});

/// As above, with an object for result; error 438 where the result is none, 91 where it is null.
ComPtr<IDispatch> memberObject(IDispatch* object, std::string_view name,
                               const std::vector<Variant>& arguments = {});

/// The object in a variant; error 438 where there is none, 91 where it is null.
ComPtr<IDispatch> heldObject(const Variant& variant);

}  // namespace velk
