// What the files of one call of the import share.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "apps/opnimp/audit/run_gate.h"
#include "apps/opnimp/report/events.h"
#include "apps/opnimp/run/import_journal.h"
#include "apps/opnimp/run/look_ahead.h"
#include "apps/opnimp/run/surroundings.h"
#include "mapping/import_screen.h"
#include "platform/database.h"

namespace velk {

struct ImportCall {
  Events events;
  const Surroundings& surroundings;
  bool hasSeveralFiles = false;
  RunGate gate{};        ///< that each call of the database passes
  std::string folder{};  ///< of the error log
  std::shared_ptr<OwnConnection> database{};
  Beside beside{};                         ///< where look-ups are asked ahead
  std::optional<ImportJournal> journal{};  ///< empty: a foreseen import knows of no runs
  /// Of a foreseen import, which shows no message of the import: gets the screen when it shows a
  /// file and its mapping, also where it refuses a mapping.
  std::function<void(const std::string& file, const ImportScreen&)> viewed{};
};

}  // namespace velk
