#include "apps/opnimp/run/preview_command.h"

#include <algorithm>
#include <new>

#include "apps/opnimp/audit/recording_connection.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/report/preview_report.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/screen_mapping.h"
#include "apps/opnimp/run/screen_session.h"
#include "apps/opnimp/warnings/find_warnings.h"
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

/// What a preview has in the place of a database: the checks that a screen makes at View pass, and
/// whatever else is executed fails as on a connection that was never opened.
class PreviewConnection final : public ClosedConnection {
 public:
  std::unique_ptr<Command> newCommand() override { return std::make_unique<PassingCheck>(); }
};

// Enough to see whether the columns are the right ones.
constexpr std::size_t mostRows = 10;

void readTable(const ListView& list, PreviewResult& preview) {
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

PreviewResult previewOf(const Arguments& arguments, std::ostream& err,
                        const Surroundings& surroundings) {
  PreviewResult preview;
  preview.arguments = arguments;
  Progress progress(err, false);
  Recorder recorder(Recorder::Mode::DryRun);  // whatever the screen does, nothing is posted
  ImportReport report(true);
  // Any folder does, because the error log stays in memory.
  ScreenSession session(recorder, {".", surroundings.clock, messagesTo(err, progress), false});
  preview.input = readInput(arguments);
  // Null if the screen did not open: then there is no table to read.
  const ImportScreen* screen = nullptr;
  try {
    screen =
        &session.open(*arguments.kind, recorded(recorder, std::make_shared<PreviewConnection>()));
    viewAndMap(session, arguments, *preview.input, report);
    preview.mapping = readMapping(session.screen());
  } catch (const Refused& refused) {
    preview.refusal = refused.what();
  }
  // After a refused --map, too: the report then lists the columns that the file really has.
  if (screen != nullptr) readTable(screen->lv, preview);
  preview.warnings = findWarnings(*preview.input, *arguments.kind, preview.mapping,
                                  civilFromDate(surroundings.clock()).year);
  return preview;
}

}  // namespace

ExitStatus runPreview(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings) {
  try {
    const PreviewResult preview = previewOf(arguments, streams.err, surroundings);
    (arguments.json ? writePreviewJson : writePreviewText)(preview, streams.out);
    return preview.status();
  } catch (const std::bad_alloc&) {
    throw CannotOpen(tooLarge(arguments.file));
  }
}

}  // namespace velk
