#include "apps/opnimp/run/import_call.h"

#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/run/run_support.h"
#include "base/errors.h"
#include "opening/company_dates.h"

namespace velk {

// The server may have no connection left, or the user no right to a second one.
void ImportCall::openBeside() {
  beside = {};
  try {
    beside.connection = hosts->openBeside();
  } catch (const CannotOpen& failure) {
    beside.failure = failure.what();
  }
}

// A database without that table is none of this application's: the import says so.
std::optional<Date> ImportCall::dateOfUndated() {
  const auto ask = [&] {
    const int year = civilFromDate(surroundings.clock()).year;
    if (!undated) undated = velk::dateOfUndated(firstTransactionDate(*database, year));
  };
  trapErrors(
      [&] { gate.pass(ask); },
      [&](const RuntimeError& error) {
        endIfHopeless(error, *database, gate);
        if (isOfSchema(error)) return;
        throw RunEnded{"the first transaction date could not be asked for: " + error.description()};
      });
  return undated;
}

}  // namespace velk
