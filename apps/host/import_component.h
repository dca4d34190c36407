// The component, as a host uses it.
#pragma once

#include <ole2.h>

#include <ado_com.h>
#include <ocidl.h>

#include "apps/host/main_window.h"
#include "platform/windows/com_pointer.h"

namespace velk {

/// The icon that the host hands to the component. The picture does not own it.
ComPtr<IPictureDisp> iconPicture(HICON icon);

/// Makes an object of the component's class, by its programmatic name, and opens a screen. Errors:
/// 429 when the class is not found; else what the component raises.
void openImport(ImportScreenKind kind, _Connection* connection, IPictureDisp* icon);

}  // namespace velk
