// What a foreseen import has in the place of a database.
#pragma once

#include <memory>

#include "platform/database.h"

namespace velk {

/// Every check and look-up passes, no date is too late, and the screen has its own colours, as on a
/// connection that was never opened.
std::shared_ptr<OwnConnection> previewConnection();

}  // namespace velk
