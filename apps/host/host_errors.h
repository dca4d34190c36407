// How the host tells its user of an error: what failed on which file, why, and what to do.
#pragma once

#include <string>
#include <string_view>

#include "base/errors.h"

namespace velk {

/// The error with the whole story in its description, a paragraph each.
RuntimeError explained(const RuntimeError& cause, std::string_view whatFailed,
                       std::string_view remedy);

}  // namespace velk
