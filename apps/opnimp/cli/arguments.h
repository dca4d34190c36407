// The command line.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "apps/opnimp/cli/kinds.h"

namespace velk {

enum class Task { Help, Version, Import, Preview, Export, DemoDatabase };

/// One --map option: "Field=Column".
struct MapOption {
  std::string field;
  std::string column;  ///< a title of the file, or "#N" for its Nth column
};

struct Arguments {
  Task task = Task::Help;
  const ImportKind* kind = nullptr;
  std::string file;  ///< to import, preview or export to, or the database to make
  std::optional<std::string> database;
  std::vector<MapOption> maps;
  std::optional<std::string> rejects;
  std::optional<std::string> appFolder;
  bool dryRun = false;
  bool json = false;
};

/// Reads the arguments behind the program's name; raises UsageError. An option's value follows it
/// as the next argument or behind "="; "--" ends the options.
Arguments parseArguments(std::span<const std::string> args);

/// True when the arguments ask for JSON, even if they make no sense otherwise.
bool asksForJson(std::span<const std::string> args);

}  // namespace velk
