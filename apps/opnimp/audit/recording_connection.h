// A connection that tells a recorder of every call.
#pragma once

#include <memory>

#include "apps/opnimp/audit/recorder.h"

namespace velk {

/// The connection to hand to a screen. The recorder has to outlive it.
std::shared_ptr<Connection> recorded(Recorder& recorder, std::shared_ptr<Connection> connection);

}  // namespace velk
