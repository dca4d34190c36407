#include "tests/support/test_world.h"

namespace velk {
namespace {

TEST_CASE("a procedure call on the connection") {
  TestWorld world;
  world.database->answerRows("sp_x", {{7}});
  const ProcedureParameter parameters[] = {{std::string("code"), DataType::VarChar},
                                           {Date{39538}, DataType::Date},
                                           {Null(), DataType::Double}};
  const auto reply = world.module.ExecuteProcedure(*world.database, "sp_x", parameters);
  REQUIRE(reply != nullptr);
  CHECK((reply->field(0) == Value(7)));
  CHECK(world.module.ExecuteProcedure(*world.database, "sp_y", {}) != nullptr);
  CHECK(world.database->calls.at(1).parameters.empty());
  CHECK(world.database->liveCommands == 0);

  const FakeCall& call = world.database->calls[0];
  CHECK(call.kind == CommandType::StoredProcedure);
  CHECK(call.text == "sp_x");
  CHECK(call.options == -1);
  REQUIRE(call.parameters.size() == 3);
  const std::pair<const char*, std::int32_t> expected[] = {
      {"Param0", 200}, {"Param2", 7}, {"Param4", 5}};
  for (std::size_t i = 0; i < 3; ++i) {
    CAPTURE(i);
    CHECK(call.parameters[i].name == expected[i].first);
    CHECK(call.parameters[i].type == expected[i].second);
    CHECK(call.parameters[i].direction == 1);
    CHECK(call.parameters[i].size == 2048);
    CHECK((call.parameters[i].value == parameters[i].value));
  }
}

TEST_CASE("a procedure that fails") {
  const Texts busy{"box 16: Database is busy, cannot establish connection"};
  for (const std::int32_t number : {-2147217871, -2147217873, 6}) {
    CAPTURE(number);
    TestWorld world;
    world.database->fail("sp_bad", static_cast<ErrorNumber>(number), "what the driver said");
    CHECK(world.module.ExecuteProcedure(*world.database, "sp_bad", {}) == nullptr);
    CHECK(world.module.lastErrorNumber() == number);
    CHECK(world.log() == "(" + std::to_string(number) + "): what the driver said\n");
    CHECK(world.messages == (number == -2147217871 ? busy : Texts{}));
    CHECK(world.database->liveCommands == 0);
    CHECK(world.module.ExecuteProcedure(*world.database, "sp_good", {}) != nullptr);
    CHECK(world.module.lastErrorNumber() == 0);
  }
}

TEST_CASE("the first open result of several") {
  const FakeRows one{{1}}, two{{2}};
  const auto none = std::nullopt;
  const struct {
    FakeResults results;
    bool nextFails;
    std::int32_t first;  // 0: the result reached is closed
    int steps;
  } rows[] = {{{one, two}, false, 1, 0},
              {{none, none, two}, false, 2, 2},
              {{none, none}, false, 0, 2},
              {{none, two}, true, 0, 1}};
  for (const auto& row : rows) {
    CAPTURE(&row - rows);
    FakeConnection connection;
    connection.answers[""] = row.results;
    connection.nextFails = row.nextFails;
    const auto reached = Velk_ModOpnImp::GetDataRecordset(connection.Execute("q"));
    REQUIRE(reached != nullptr);
    REQUIRE(reached->State() == (row.first == 0 ? stateClosed : stateOpen));
    if (row.first != 0) CHECK((reached->field(0) == Value(row.first)));
    CHECK(connection.nextResults == row.steps);
  }
  CHECK(Velk_ModOpnImp::GetDataRecordset(nullptr) == nullptr);
}

TEST_CASE("a field's value as a number") {
  const auto text = [](const char* t) { return Value(std::string(t)); };
  const std::pair<Value, double> rows[] = {
      {Null(), 0}, {text("12.5abc"), 12.5}, {text("abc"), 0}, {-3, -3}, {0.1, 0.1}};
  for (const auto& row : rows) {
    CAPTURE(toText(row.first));
    CHECK(Velk_ModOpnImp::ValOrZero(row.first) == row.second);
  }
  CHECK(errorOf([&] { Velk_ModOpnImp::ValOrZero(text("1e999")); }) == 6);
}

}  // namespace
}  // namespace velk
