// The host's service object, which the component creates by its class identifier.
#pragma once

#include <host_service_com.h>

#include "platform/windows/com_pointer.h"

namespace velk {

class MainWindow;

/// Captions are their keys, messages are shown as they are, with the active window for owner and
/// the host's name where no caption is given. Answers for the second host object, too, whose main
/// window has the control array cmdMainMenu: the import buttons. `window` outlives the object.
ComPtr<IVelkHostService> hostServiceObject(MainWindow& window);

}  // namespace velk
