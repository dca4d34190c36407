#include "apps/opnimp/run/preview_command.h"

#include <algorithm>
#include <map>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/report/preview_report.h"
#include "apps/opnimp/run/database_hosts.h"
#include "apps/opnimp/run/import_command.h"
#include "apps/opnimp/run/long_values.h"
#include "apps/opnimp/run/profiles.h"
#include "apps/opnimp/run/run_support.h"

namespace velk {

namespace {

// Enough to see whether the columns are the right ones.
constexpr std::size_t mostRows = 10;

void readTable(const ListView& list, PreviewTable& preview) {
  for (std::size_t column = 0; column < list.columnCount(); ++column) {
    preview.titles.emplace_back(list.title(column));
  }
  for (std::size_t row = 1; row <= std::min(mostRows, list.rowCount()); ++row) {
    auto& cells = preview.rows.emplace_back();
    for (std::size_t column = 0; column < list.columnCount(); ++column) {
      cells.emplace_back(list.cell(row, column));
    }
  }
}

/// Only a database that is named on the command line is asked: a preview needs none. Raises
/// UsageError where the profile would be written over it, or over the files.
std::shared_ptr<OwnConnection> catalogueOf(const Arguments& arguments,
                                           const Surroundings& surroundings) {
  std::vector<DatabaseChoice> choices;
  if (!arguments.databases.empty()) choices = chooseDatabases(arguments, surroundings);
  checkWrites(profileWritten(arguments, surroundings),
              choices.empty() ? DatabaseChoice{} : choices.front(), applicationFolder({}),
              arguments.files);
  if (choices.empty()) return nullptr;
  RunGate gate;
  DatabaseHosts hosts(std::move(choices), surroundings, gate);
  return openUnlocked(hosts);
}

}  // namespace

ExitStatus runPreview(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings) {
  const std::shared_ptr<OwnConnection> database = catalogueOf(arguments, surroundings);
  RunGate gate;
  std::optional<Catalogue> catalogue;
  if (database) catalogue.emplace(*database, gate);
  std::map<std::string, PreviewTable> tables;
  const auto show = [&](const FilesResult& call) {
    std::vector<FilePreview> files;
    for (const ImportResult* result : call.files()) {
      files.push_back({*result, tables[result->arguments.file]});
      if (catalogue) files.back().longValues = findLongValues(*result, *catalogue);
    }
    (arguments.json ? writePreviewJson : writePreviewText)(files, call.status(), streams.out);
  };
  const auto viewed = [&](const std::string& file, const ImportScreen& screen) {
    readTable(screen.lv, tables[file]);
  };
  try {
    // Without a progress line.
    return foreseeImport(arguments, {streams.out, streams.err, false}, surroundings,
                         {viewed, show, catalogue ? &*catalogue : nullptr});
  } catch (const std::bad_alloc&) {
    throw CannotOpen(tooLarge(arguments.files.back()));
  }
}

}  // namespace velk
