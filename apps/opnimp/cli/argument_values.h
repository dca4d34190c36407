// Values of the command line that take more than the library's own checks. All raise UsageError.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "apps/opnimp/cli/arguments.h"

namespace velk {

/// The kinds that a command takes: by name, or a line each with what they are.
std::string kindsOf(Arguments::Command command, bool described);
const ImportKind* kindNamed(const std::string& name, Arguments::Command command);
/// Of "Field=Column".
MapOption mapOption(const std::string& value);
std::uint64_t runNumber(const std::string& text);

/// The library would take the next argument for the value in "--rejects=", even "--dry-run".
void checkValues(std::span<const std::string> args);
/// What makes no sense with more than one file.
void checkSeveral(const Arguments& arguments);
/// A field that --map has twice: the last would win without a word.
void checkMaps(const Arguments& arguments);
/// Options of how files are read that would mean nothing.
void checkReading(const Arguments& arguments);
/// A file of the name "-" would hardly be meant.
void checkOutputs(const Arguments& arguments);

}  // namespace velk
