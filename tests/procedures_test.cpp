#include "tests/support/test_world.h"

namespace velk {

TEST_CASE("a procedure call on the connection") {
  TestWorld world;
  world.database->answerRows("sp_x", {{7}});
  const ProcedureParameter parameters[] = {{std::string("code"), DataType::VarChar},
                                           {Date{39538}, DataType::Date},
                                           {Null(), DataType::Double}};
  const auto reply = world.module.ExecuteProcedure(*world.database, "sp_x", parameters);
  REQUIRE(reply != nullptr);
  CHECK((reply->field(0) == Value(7)));
  CHECK(world.database->liveCommands == 0);
  const FakeCall& call = world.database->calls.at(0);
  CHECK(call.kind == CommandType::StoredProcedure);
  CHECK(call.options == -1);
  Texts described;
  for (const FakeParameter& p : call.parameters) {
    described.push_back(p.name + " " + std::to_string(p.type) + " " + std::to_string(p.direction) +
                        " " + std::to_string(p.size) + " " + toText(p.value));
  }
  CHECK(described ==
        Texts{"Param0 200 1 2048 code", "Param2 7 1 2048 31/03/2008", "Param4 5 1 2048 "});
  CHECK(isNull(call.parameters[2].value));
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
    std::int32_t first, steps;  // first 0: the result reached is closed
  } rows[] = {{{one, two}, false, 1, 0},
              {{none, none, two}, false, 2, 2},
              {{none, none}, false, 0, 2},
              {{none, two}, true, 0, 1}};
  for (const auto& row : rows) {
    CAPTURE(&row - rows);
    FakeConnection connection;
    connection.answers[""] = row.results;
    if (row.nextFails) connection.nextError.emplace(ErrorNumber::InvalidProcedureCall);
    const auto reached = Velk_ModOpnImp::GetDataRecordset(connection.Execute("q"));
    REQUIRE(reached->State() == (row.first == 0 ? stateClosed : stateOpen));
    if (row.first != 0) CHECK((reached->field(0) == Value(row.first)));
    CHECK(connection.nextResults == row.steps);
  }
  CHECK(Velk_ModOpnImp::GetDataRecordset(nullptr) == nullptr);
}

}  // namespace velk
