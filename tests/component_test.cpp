#include "component/Velk_ClsOpnImp.h"

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

}  // namespace velk
