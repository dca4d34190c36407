// What every COM object of this program is made of: a vtable whose unused members answer E_NOTIMPL,
// automation by name among them, and error information.
#pragma once

#include <ole2.h>

#include <ado_com.h>
#include <unused_members.h>

#include "platform/windows/reporting_object.h"

namespace velk {

inline constexpr wchar_t errorSource[] = L"Opening import host";

/// `Unused` fills the members that a derived class does not have.
template <template <class> class Unused, class Interface, class... Others>
using VtableObject = Unused<ReportingObject<errorSource, Interface, Others...>>;

}  // namespace velk
