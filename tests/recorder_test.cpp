// The recorder by itself: what whole imports do not show of it.
#include "apps/opnimp/recorder.h"

#include <doctest/doctest.h>

#include "tests/support/scripted_connection.h"

using namespace velk;

namespace {

std::shared_ptr<Recordset> callProcedure(Connection& connection) {
  const auto command = connection.newCommand();
  command->setCommandType(CommandType::StoredProcedure);
  command->setCommandText("sp_any");
  auto result = command->Execute(defaultOptions);
  CHECK(result->State() == stateClosed);
  return result;
}

}  // namespace

TEST_CASE("an error behind the first result is noticed at once, and raised where it is asked for") {
  Recorder recorder(Recorder::Mode::Post);
  const auto inner = std::make_shared<ScriptedConnection>();
  inner->fates = "l";
  const auto result = callProcedure(*recorder.wrap(inner));
  CHECK(recorder.calls()[0].result == CallResult::FailedLate);
  CHECK_THROWS_AS(result->NextRecordset(), RuntimeError);
}

TEST_CASE("a dry run asks, but calls no procedure") {
  Recorder recorder(Recorder::Mode::DryRun);
  const auto inner = std::make_shared<ScriptedConnection>();
  const auto connection = recorder.wrap(inner);
  connection->Execute("select 1");
  callProcedure(*connection);
  CHECK(inner->calls == 1);
  CHECK(recorder.calls()[1].result == CallResult::NotRun);
}
