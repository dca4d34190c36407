#include "apps/opnimp/run/whole_run.h"

#include <algorithm>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "base/errors.h"

namespace velk {

WholeRun::WholeRun(OwnConnection& database, Recorder& recorder)
    : database_(database), recorder_(recorder) {
  try {
    database_.beginTransaction();
    // Some drivers begin only with the first statement: what counts here is that there is an
    // answer.
    database_.isInTransaction();
  } catch (const RuntimeError& error) {
    throw CannotOpen("the database takes no --all-or-nothing: " +
                     std::string(withoutEnd(error.description())));
  }
  recorder_.requireTransaction([this] { return isOpen(); });
}

WholeRun::~WholeRun() {
  if (!settled_) ignoringFailure([&] { takeBack(); });
}

std::string WholeRun::settle(bool keep) {
  settled_ = true;
  const End end =
      recorder_.gate().pass([&] { return keep ? commit() : takeBack(); }, RunGate::Limit::None);
  recorder_.settle(end.changes);
  return end.failure;
}

// If there is no answer, it is not known to be open.
bool WholeRun::isOpen() const {
  bool open = false;
  trapErrors([&] { open = database_.isInTransaction(); }, [](const RuntimeError&) {});
  return open;
}

// Looked at once more, since the procedures have had the last word until now.
WholeRun::End WholeRun::commit() {
  if (hasPosted() && !isOpen()) return takeBack();
  End end{Changes::Stand, {}};
  trapErrors([&] { database_.commit(); },
             [&](const RuntimeError& error) {
               // It may have come after the commit.
               end = {Changes::NotKnown,
                      "the database did not confirm that it keeps what was posted: " +
                          error.description()};
             });
  if (!end.failure.empty()) takeBack();
  return end;
}

WholeRun::End WholeRun::takeBack() {
  const bool open = !hasPosted() || isOpen();
  const bool takenBack = trapErrors([&] { database_.rollback(); }, [](const RuntimeError&) {});
  if (open && takenBack) return {Changes::TakenBack, {}};
  return {Changes::NotKnown, "what was posted could not be taken back for certain"};
}

bool WholeRun::hasPosted() const {
  return std::ranges::count(recorder_.calls(), CallKind::Procedure, &RecordedCall::kind) > 0;
}

}  // namespace velk
