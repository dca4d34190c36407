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

// A database without that table is none of this application's: the import says so. What is no date
// the screens take for none.
std::optional<Date> ImportCall::firstDate() {
  if (first) return first;
  const auto ask = [&] {
    first = firstTransactionDate(*database, civilFromDate(surroundings.clock()).year);
  };
  trapErrors(
      [&] { gate.pass(ask); },
      [&](const RuntimeError& error) {
        endIfHopeless(error, *database, gate);
        if (error.is(ErrorNumber::TypeMismatch)) first = Date{};
        if (first || isOfSchema(error)) return;
        throw RunEnded{"the first transaction date could not be asked for: " + error.description()};
      });
  return first;
}

std::optional<Date> ImportCall::dateOfUndated() {
  const std::optional<Date> date = firstDate();
  return date ? std::optional(velk::dateOfUndated(*date)) : std::nullopt;
}

}  // namespace velk
