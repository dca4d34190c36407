// The host's service object, through its COM interface.
#pragma once

#include <memory>

#include "platform/host_service.h"

namespace velk {

/// Creates the host's registered service object, in process or as a local server; null when its
/// class is not registered. Any other failure is an error.
std::shared_ptr<HostService> createComHostService();

}  // namespace velk
