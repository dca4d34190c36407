// The recorder by itself: what it notes, and when it ends a run.
#include <doctest/doctest.h>

#include "apps/opnimp/recorder.h"
#include "apps/opnimp/run_ended.h"
#include "tests/support/scripted_connection.h"

using namespace velk;

namespace {

void callProcedure(Connection& connection) {
  const auto command = connection.newCommand();
  command->setCommandType(CommandType::StoredProcedure);
  command->Append("Param0", static_cast<std::int32_t>(DataType::Double), inputParameter, 2048);
  command->setValue(0, 1.5);
  command->setCommandText("sp_any");
  const auto result = command->Execute(defaultOptions);
  CHECK(result->State() == stateClosed);
}

class FullDisk final : public ErrorLog {
 public:
  void append(std::string_view) override { throw RuntimeError(ErrorNumber::DiskFull); }
};

}  // namespace

TEST_CASE("a failing call is kept with its parameters and all diagnostics, and still fails") {
  Recorder recorder(Recorder::Mode::Post);
  const auto inner = std::make_shared<ScriptedConnection>();
  inner->onCall = [](std::size_t, std::string_view) { throw RuntimeError(77, "no"); };
  const auto connection = recorder.wrap(inner);
  CHECK_THROWS_AS(callProcedure(*connection), RuntimeError);
  REQUIRE(recorder.calls().size() == 1);
  const RecordedCall& call = recorder.calls()[0];
  CHECK(call.result == CallResult::Failed);
  CHECK(call.text == "sp_any");
  CHECK(call.parameters == std::vector<Value>{1.5});
  CHECK(call.error->number == 77);
  CHECK(call.error->diagnostics.size() == 2);
}

TEST_CASE("an error behind the first result is noticed although nobody asks for it") {
  Recorder recorder(Recorder::Mode::Post);
  const auto inner = std::make_shared<ScriptedConnection>();
  inner->lateFailure = 1;
  callProcedure(*recorder.wrap(inner));
  CHECK(recorder.calls()[0].result == CallResult::FailedLate);
}

TEST_CASE("the caller meets a late error where it would have met it") {
  Recorder recorder(Recorder::Mode::Post);
  const auto inner = std::make_shared<ScriptedConnection>();
  inner->lateFailure = 1;
  const auto command = recorder.wrap(inner)->newCommand();
  const auto result = command->Execute(defaultOptions);
  CHECK_THROWS_AS(result->NextRecordset(), RuntimeError);
}

TEST_CASE("a lost connection ends the run, whatever the traps catch") {
  Recorder recorder(Recorder::Mode::Post);
  const auto inner = std::make_shared<ScriptedConnection>();
  inner->lost = true;
  inner->onCall = [](std::size_t, std::string_view) {
    throw RuntimeError(ErrorNumber::ProviderFailure);
  };
  CHECK_THROWS_AS(recorder.wrap(inner)->Execute("select 1"), RunEnded);
  CHECK(recorder.calls()[0].result == CallResult::Unknown);
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

TEST_CASE("a line that the file does not take is kept, with the reason") {
  Recorder recorder(Recorder::Mode::Post);
  FullDisk disk;
  ErrorLog& log = recorder.log(&disk);
  CHECK_THROWS_AS(log.append("line"), RuntimeError);
  REQUIRE(recorder.lines().size() == 1);
  CHECK(recorder.lines()[0].kept == RecordedLine::Kept::NotWritten);
  CHECK(recorder.lines()[0].writeError == "Disk full");
}
