// The public class, and the module behind it: the error log, calls of procedures.
#include "component/Velk_ClsOpnImp.h"

#include "shared/error_log.h"
#include "tests/support/test_world.h"

namespace velk {

TEST_CASE("screens live on without the object that opened them") {
  TestWorld world;
  struct Icon final : Picture {};
  const std::shared_ptr<const Picture> icon = std::make_shared<Icon>();
  {
    Velk_ClsOpnImp component(world.module);
    component.ImportCustomerOpening(world.database, icon);
    component.ImportVendorOpening(std::make_shared<FakeConnection>(), nullptr);
    component.ImportBankBranchOpening(std::make_shared<FakeConnection>(), nullptr);
  }
  REQUIRE(world.shell.open().size() == 3);
  auto first = std::dynamic_pointer_cast<ImportScreen>(world.shell.open()[0]);
  CHECK(first->icon() == icon);
  CHECK(&first->connection() == world.database.get());
  CHECK(&dynamic_cast<ImportScreen&>(*world.shell.open()[1]).connection() != world.database.get());
  CHECK(world.hostCreations == 1);
  first->cmdExit.userClick();
  CHECK(world.shell.open().size() == 2);
  first.reset();  // nothing keeps a closed screen, its connection and icon
  CHECK(icon.use_count() == 1);
  CHECK(world.database.use_count() == 1);
  CHECK(world.database->liveCommands == 0);
}

TEST_CASE("a screen without a connection opens, and its queries fail") {
  TestWorld world;
  Velk_ClsOpnImp(world.module).ImportCustomerOpening(nullptr, nullptr);
  REQUIRE(world.shell.open().size() == 1);
  const std::string why(standardDescription(ErrorNumber::ConnectionInvalid));
  CHECK(world.log() == "(3709): Velk_frmCustOpn_OpnImp : InitLoadColors - " + why + "\n");
  auto& screen = dynamic_cast<Velk_frmCustOpn_OpnImp&>(*world.shell.open()[0]);
  world.view(screen, "Customer ID\r\n1");
  CHECK(screen.cmdImport.userClick() == EventResult::Failed);
  CHECK(world.messages == Texts{"box 16: " + why});
}

TEST_CASE("lines of the log") {
  TestWorld world;
  Velk_ModOpnImp& module = world.module;
  world.files.contents[world.logPath()] = "kept\r\n";
  module.WriteErrorLog("one\r\ntwo");
  module.WriteErrorLog("");
  module.LogError("x", "53");
  module.logTrapped("Screen : Routine - ", RuntimeError(ErrorNumber::ProviderTimeout, "busy"));
  module.WriteErrorLog("€ \u0416");
  CHECK(world.log() ==
        "kept\none\ntwo\n\n(53): x\n(-2147217871): Screen : Routine - busy\n\x80 ?\n");
  CHECK(world.files.open == 0);
}

TEST_CASE("traps keep runtime errors in, and nothing else; the log may be another than the file") {
  struct Lines final : ErrorLog {
    void append(std::string_view line) override {
      if (line == "bad") throw RuntimeError(ErrorNumber::DiskFull);
      text.append(line).append("\n");
    }
    std::string text;
  } memory;
  TestWorld world;
  Velk_ModOpnImp module(world.module.platform(), &memory);
  const auto fail = [] { throw RuntimeError(7, "error"); };
  CHECK(module.trap("", [] {}));
  CHECK_FALSE(module.trap("tag ", fail));
  module.WriteErrorLog("bad");
  module.WriteErrorLog("line");
  CHECK_THROWS_AS(module.trap("", [] { throw 1; }), int);
  CHECK(memory.text == "(7): tag error\nline\n");
  CHECK(world.log().empty());
}

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
