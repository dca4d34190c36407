#include "apps/opnimp/run/import_call.h"

#include "apps/opnimp/cli/failures.h"

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

}  // namespace velk
