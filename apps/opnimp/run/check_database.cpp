#include "apps/opnimp/run/check_database.h"

#include <algorithm>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/report/database_report.h"
#include "apps/opnimp/run/company_needs.h"
#include "apps/opnimp/run/database_hosts.h"
#include "base/errors.h"
#include "opening/company_dates.h"
#include "opening/opening_kinds.h"

namespace velk {

namespace {

LookUpCheck lookedUp(OwnConnection& database, const std::string& text) {
  LookUpCheck check{text, {}};
  trapErrors([&] { database.Execute(text); },
             [&](const RuntimeError& error) { check.error = error.description(); });
  return check;
}

KindCheck checked(OwnConnection& database, const ImportKind& kind, const std::string& firstDate) {
  KindCheck check{std::string(kind.name), {}, {}};
  const CompanyNeeds needs = needsOf(kind);
  for (const std::string& text : needs.lookUps) {
    LookUpCheck& lookUp = check.lookUps.emplace_back(lookedUp(database, text));
    if (text == firstDateQuery && lookUp.error.empty() && firstDate.empty()) {
      lookUp.error = noFirstDate;
    }
  }
  for (const ProcedureNeed& need : needs.procedures) {
    ProcedureCheck& procedure =
        check.procedures.emplace_back(ProcedureCheck{std::string(need.name), need.parameters});
    // What the catalogue does not answer is left to the import.
    trapErrors([&] { procedure.isRefused = database.isRefused(need.name, need.parameters); },
               [&](const RuntimeError&) { procedure.isRefused = true; });
    if (procedure.isRefused) continue;
    procedure.takes = database.parametersOf(need.name);
    procedure.unfit = unfitParameters(need, procedure.takes);
  }
  return check;
}

}  // namespace

ExitStatus checkDatabase(const Arguments& arguments, const Streams& streams,
                         const Surroundings& surroundings) {
  RunGate gate;
  DatabaseHosts hosts(chooseDatabases(arguments, surroundings), surroundings, gate);
  const auto database = openUnlocked(hosts);
  DatabaseCheck check{hosts.shown(), database->facts(), {}, {}, {}};
  Date first;  // none: day 0, or no date at all
  trapErrors(
      [&] { first = firstTransactionDate(*database, civilFromDate(surroundings.clock()).year); },
      [](const RuntimeError&) {});  // the look-up of the kinds says why
  if (first.days != 0) check.firstDate = toText(first);
  const Date earliest = database->earliestDate();
  if (earliest.days > firstCalendarDay) check.earliestDate = toText(earliest);
  for (const ImportKind& kind : importKinds()) {
    const bool isAsked = arguments.kinds.empty() ||
                         std::ranges::find(arguments.kinds, &kind) != arguments.kinds.end();
    if (isAsked) check.kinds.push_back(checked(*database, kind, check.firstDate));
  }
  if (database->isLost()) {
    throw CannotOpen("the connection to the database " + hosts.shown() +
                     " was lost. Check again when the server is there");
  }
  (arguments.json ? writeCheckJson : writeCheckText)(check, streams.out);
  return check.status();
}

}  // namespace velk
