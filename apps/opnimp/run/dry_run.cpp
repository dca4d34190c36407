#include "apps/opnimp/run/dry_run.h"

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "base/errors.h"

namespace velk {

DryRun::DryRun(OwnConnection& database) : database_(database) {
  trapErrors([&] { database_.beginTransaction(); },
             [](const RuntimeError& error) {
               throw CannotOpen("the database takes no dry run: " +
                                std::string(withoutEnd(error.description())));
             });
}

// What fails is taken back when the connection closes.
DryRun::~DryRun() {
  ignoringFailure([&] { database_.rollback(); });
}

}  // namespace velk
