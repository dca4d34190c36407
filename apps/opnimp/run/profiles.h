// The profiles of a user: --profile and --save-profile.
#pragma once

#include <span>
#include <string>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/report/events.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// What the arguments ask for, those of their --profile included; what they say themselves comes
/// first. Raises UsageError and CannotOpen.
Arguments argumentsWithProfile(std::span<const std::string> args, const Surroundings& surroundings);

/// Saves how a file was read as --save-profile wants it, if it does; what hinders it is told.
void saveProfile(const ImportResult& result, const Surroundings& surroundings, Events& events);

}  // namespace velk
