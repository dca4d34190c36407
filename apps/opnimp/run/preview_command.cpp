#include "apps/opnimp/run/preview_command.h"

#include <algorithm>
#include <map>
#include <new>
#include <utility>
#include <vector>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/report/preview_report.h"
#include "apps/opnimp/run/database_hosts.h"
#include "apps/opnimp/run/import_command.h"
#include "apps/opnimp/run/long_values.h"
#include "apps/opnimp/run/profiles.h"
#include "apps/opnimp/run/run_support.h"
#include "platform/memory_recordset.h"

namespace velk {

namespace {

// Every command passes, because at View a screen runs checks only. They answer 1 when they pass.
class PassingCheck final : public Command {
 public:
  void setCommandType(CommandType /*type*/) override {}
  void setCommandText(std::string_view /*text*/) override {}
  void Append(std::string_view /*name*/, std::int32_t /*type*/, std::int32_t /*direction*/,
              std::int32_t /*size*/) override {}
  void setValue(std::size_t /*position*/, const Value& /*value*/) override {}
  std::shared_ptr<Recordset> Execute(std::int32_t /*options*/) override {
    return std::make_shared<MemoryRecordset>(1, std::vector<Value>{std::int32_t{1}});
  }
};

/// What a preview has in the place of a database: every check and look-up passes, no date is too
/// late, and the screen has its own colours, as on a connection that was never opened.
class PreviewConnection final : public OwnConnection {
 public:
  std::unique_ptr<Command> newCommand() override { return std::make_unique<PassingCheck>(); }

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    if (text.find("ColorSettings") != std::string_view::npos) {
      return ClosedConnection().Execute(text);
    }
    // No salesman may have an empty type.
    const bool asksForNothing = text.find("DSTypeValue = ''") != std::string_view::npos;
    if (asksForNothing) return std::make_shared<MemoryRecordset>(1, std::vector<Value>{});
    const bool asksForDate = text.find("OpeningDate") != std::string_view::npos;
    const Value answer = asksForDate ? Value(Date{lastCalendarDay}) : Value(std::int32_t{1});
    return std::make_shared<MemoryRecordset>(1, std::vector<Value>{answer});
  }
};

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
  std::map<std::string, PreviewTable> tables;
  const auto show = [&](const FilesResult& call) {
    std::vector<FilePreview> files;
    for (const ImportResult* result : call.files()) {
      files.push_back({*result, tables[result->arguments.file]});
      if (database) files.back().longValues = findLongValues(result->traces, *database);
    }
    (arguments.json ? writePreviewJson : writePreviewText)(files, call.status(), streams.out);
  };
  const auto viewed = [&](const std::string& file, const ImportScreen& screen) {
    readTable(screen.lv, tables[file]);
  };
  try {
    // Without a progress line.
    return foreseeImport(arguments, {streams.out, streams.err, false}, surroundings,
                         {std::make_shared<PreviewConnection>(), viewed, show});
  } catch (const std::bad_alloc&) {
    throw CannotOpen(tooLarge(arguments.files.back()));
  }
}

}  // namespace velk
