// The profiles of a user: --profile and --save-profile.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/report/events.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// What the arguments ask for, those of their --profile included; what they say themselves comes
/// first. Raises UsageError and CannotOpen.
Arguments argumentsWithProfile(std::span<const std::string> args, const Surroundings& surroundings);

/// What --save-profile writes, if it is given.
std::vector<Writes> profileWritten(const Arguments& arguments, const Surroundings& surroundings);

/// Saves how a file was read as --save-profile wants it, if it does; what hinders it is told, and
/// stands in the result.
void saveProfile(ImportResult& result, const Surroundings& surroundings, Events& events);

}  // namespace velk
