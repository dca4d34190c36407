#include "apps/opnimp/cli/argument_values.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

// Only salesmen have a screen with an Export button.
bool takes(Arguments::Command command, const ImportKind& kind) {
  return command != Arguments::Command::Export || kind.type == MasterType::Salesman;
}

/// Those that say how a file is converted.
std::vector<std::string> conversionOptions(const Arguments& arguments) {
  std::vector<std::string> names;
  for (const std::string& given : arguments.reading) {
    names.push_back(given.substr(0, given.find('=')));
  }
  std::erase(names, "--accept");
  if (arguments.convert.lastLines) names.emplace_back("--skip-last-lines");
  return names;
}

}  // namespace

std::string kindsOf(Arguments::Command command, bool described) {
  std::string list;
  for (const ImportKind& kind : importKinds()) {
    if (!takes(command, kind)) continue;
    const std::string name(kind.name);
    if (!list.empty()) list += described ? "\n" : ", ";
    list += described ? padRight(name, 18).append(kind.what) : name;
  }
  return list;
}

const ImportKind* kindNamed(const std::string& name, Arguments::Command command) {
  const ImportKind* const kind = findKind(name);
  if (kind != nullptr && takes(command, *kind)) return kind;
  throw UsageError((kind == nullptr ? "there is no kind \"" + name + "\""
                                    : "there is no export of the kind " + name) +
                   "; there is: " + kindsOf(command, false));
}

MapOption mapOption(const std::string& value) {
  // The first one separates, because a title of the file may contain further ones.
  const std::size_t equals = value.find('=');
  if (equals == std::string::npos || equals == 0 || equals + 1 == value.size()) {
    throw UsageError(R"(--map takes "Field=Column", such as --map "Balance=Amount Due", not ")" +
                     value + "\"");
  }
  return {value.substr(0, equals), value.substr(equals + 1)};
}

std::uint64_t runNumber(const std::string& text) {
  const auto number = exactNumber<std::uint64_t>(text);
  if (number && *number > 0) return *number;
  throw UsageError("RUN is the number of a run, such as 12, not \"" + text +
                   "\"; `opnimp runs` lists them");
}

void checkValues(std::span<const std::string> args) {
  const auto end = std::ranges::find(args, "--");
  const auto empty = std::find_if(args.begin(), end, [](const std::string& arg) {
    return arg.starts_with("--") && arg.find('=') + 1 == arg.size();
  });
  if (empty != end) throw UsageError(*empty + " needs a value");
}

void checkSeveral(const Arguments& arguments) {
  if (arguments.files.size() < 2) return;
  if (arguments.fromLine != 1) {
    throw UsageError("--from-line is of one file: import that by itself");
  }
  if (arguments.savedProfile) throw UsageError("--save-profile is of one file: name one only");
  if (arguments.allOrNothing) {
    throw UsageError(
        "--all-or-nothing is of one file: what is posted of the files before it would stay. Import "
        "each by itself");
  }
}

void checkMaps(const Arguments& arguments) {
  std::set<std::string> fields;
  for (const MapOption& map : arguments.maps) {
    if (fields.insert(lowerAscii(trim(map.field))).second) continue;
    throw UsageError("--map has the field " + printable(map.field) + " twice: leave one out");
  }
}

void checkReading(const Arguments& arguments) {
  const bool isOfWorkbooks =
      arguments.kind != nullptr && arguments.kind->format == FileFormat::Workbook;
  for (const std::string& name : conversionOptions(arguments)) {
    if (arguments.convert.raw) {
      throw UsageError("--raw imports the file as it is, and " + name +
                       " says how it is converted: leave one of them out");
    }
    if (isOfWorkbooks && name != "--sheet") {
      throw UsageError(name + " is of texts, and a " + std::string(arguments.kind->name) +
                       " comes in a workbook, whose cells are read as they are: leave it out");
    }
  }
}

void checkOutputs(const Arguments& arguments) {
  const std::pair<const char*, const std::optional<std::string>*> outputs[] = {
      {"--rejects", &arguments.rejects},
      {arguments.command == Arguments::Command::Report ? "--html" : "--report", &arguments.report},
      {"--metrics", &arguments.metrics},
      {"--journal", &arguments.journal},
      {"--save-profile", &arguments.savedProfile}};
  for (const auto& [option, path] : outputs) {
    if (*path != standardStream) continue;
    throw UsageError(std::string(option) +
                     " needs the name of a file: it is not written to standard output. A file of "
                     "that name is ./-");
  }
}

}  // namespace velk
