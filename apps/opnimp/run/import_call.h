// What the files of one call of the import share.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/report/events.h"
#include "apps/opnimp/report/preview_report.h"
#include "apps/opnimp/run/database_hosts.h"
#include "apps/opnimp/run/import_journal.h"
#include "apps/opnimp/run/look_ahead.h"
#include "apps/opnimp/run/surroundings.h"
#include "mapping/import_screen.h"
#include "platform/database.h"

namespace velk {

/// A file of the call that was imported before the one in hand.
struct EarlierFile {
  const Recorder* recorder;
  /// What its records from that one on have posted may be lost with a server. Throws RunEnded.
  std::function<void(std::size_t record)> doubtFrom;
};

struct ImportCall {
  Events events;
  const Surroundings& surroundings;
  bool hasSeveralFiles = false;
  RunGate gate{};                        ///< that each call of the database passes
  std::string folder{};                  ///< of the error log
  std::optional<DatabaseHosts> hosts{};  ///< empty: a foreseen import has none
  std::shared_ptr<OwnConnection> database{};
  Beside beside{};                         ///< where look-ups are asked ahead
  std::optional<ImportJournal> journal{};  ///< empty: a foreseen import knows of no runs
  std::optional<Date> first{};             ///< the answer of firstDate
  std::vector<EarlierFile> earlier{};
  /// By file, where the database tells what its procedures take.
  std::map<std::string, std::vector<LongValue>> longValues{};
  /// Of a foreseen import, which shows no message of the import: gets the screen when it shows a
  /// file and its mapping, also where it refuses a mapping.
  std::function<void(const std::string& file, const ImportScreen&)> viewed{};

  /// The company's first transaction date, asked at first use; day 0 where it has none, empty if
  /// the database does not answer. Throws RunEnded.
  std::optional<Date> firstDate();
  /// What a record of opening balances without a date gets; else as firstDate.
  std::optional<Date> dateOfUndated();

  /// Opens `beside` on the host that is worked on, or says why it could not.
  void openBeside();
};

}  // namespace velk
