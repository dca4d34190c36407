// What is told on standard error while a run goes on: lines for people or, by --log-format json,
// one JSON object a line for programs (docs/monitoring.md).
#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>

#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/progress.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/report/import_result.h"

namespace velk {

class Events {
 public:
  /// `isVerbose`: people are told of runs and records, too, as they come.
  Events(const Streams& streams, bool asJson, bool isVerbose = false)
      : err_(streams.err),
        asJson_(asJson),
        tellsAll_(asJson || isVerbose),
        progress_(streams.err, streams.errIsTerminal && !asJson) {}

  /// The line that makes room for whatever is told; on a terminal and for people only.
  Progress& progress() { return progress_; }

  /// What a screen shows, word for word; may have several lines.
  void message(std::string_view text);
  /// A sentence of the runner's own, with its full stop.
  void notice(std::string_view text);
  /// Why a command ended before it had a report, without the full stop.
  void failure(ExitStatus status, std::string_view text);

  // People read the following in the report, too.
  void runBegins(const ImportResult& run);
  /// Of a record that needs attention.
  void recordEnds(const ImportResult& run, std::size_t record, const RecordTrace& trace);
  /// Of a record, counted from 0, or of the database as a whole: what it waits for. For people,
  /// too.
  void waits(const ImportResult& run, std::optional<std::size_t> record,
             const LockHolders& holders);
  /// For people, too.
  void hostChanges(const ImportResult& run, const HostChange& change);
  /// Also why it broke off, before it.
  void runEnds(const ImportResult& run);

 private:
  void line(std::string_view text);
  void tell(std::string_view event, const nlohmann::ordered_json& fields);

  std::ostream& err_;
  const bool asJson_;
  const bool tellsAll_;
  Progress progress_;
};

}  // namespace velk
