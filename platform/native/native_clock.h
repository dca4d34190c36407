// The machine's clock.
#pragma once

#include "base/dates.h"

namespace velk {

/// Local date and time, to the second.
Date localNow();

}  // namespace velk
