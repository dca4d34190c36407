// The machine's clock.
#pragma once

#include "platform/dates.h"

namespace velk {

/// Local date and time, to the second.
Date localNow();

}  // namespace velk
