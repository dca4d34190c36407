#include "apps/opnimp/run/whole_run.h"

#include <algorithm>

#include "apps/opnimp/cli/failures.h"
#include "base/errors.h"

namespace velk {

WholeRun::WholeRun(const OpenDatabase& database, Recorder& recorder)
    : database_(database), recorder_(recorder) {
  try {
    database_.begin();
    // Some drivers begin only with the first statement: what counts here is that there is an
    // answer.
    database_.inTransaction();
  } catch (const RuntimeError& error) {
    throw CannotOpen("the database takes no --all-or-nothing: " + error.description());
  }
  recorder_.requireTransaction([this] { return isOpen(); });
}

WholeRun::~WholeRun() {
  if (!settled_) takeBack();
}

std::string WholeRun::settle(bool keep) {
  settled_ = true;
  return recorder_.gate().pass([&] { return keep ? commit() : takeBack(); });
}

// If there is no answer, it is not known to be open.
bool WholeRun::isOpen() const {
  bool open = false;
  trapErrors([&] { open = database_.inTransaction(); }, [](const RuntimeError&) {});
  return open;
}

// Looked at once more, since the procedures have had the last word until now.
std::string WholeRun::commit() {
  if (hasPosted() && !isOpen()) return takeBack();
  std::string failure;
  const bool kept = trapErrors([&] { database_.commit(); },
                               [&](const RuntimeError& error) { failure = error.description(); });
  if (kept) return {};
  // The error may have come after the commit.
  trapErrors([&] { database_.takeBack(); }, [](const RuntimeError&) {});
  recorder_.settle(Changes::NotKnown);
  return "the database did not confirm that it keeps what was posted: " + failure;
}

std::string WholeRun::takeBack() {
  const bool open = !hasPosted() || isOpen();
  const bool takenBack = trapErrors([&] { database_.takeBack(); }, [](const RuntimeError&) {});
  const bool known = open && takenBack;
  recorder_.settle(known ? Changes::TakenBack : Changes::NotKnown);
  return known ? "" : "what was posted could not be taken back for certain";
}

bool WholeRun::hasPosted() const {
  return std::ranges::count(recorder_.calls(), CallKind::Procedure, &RecordedCall::kind) > 0;
}

}  // namespace velk
