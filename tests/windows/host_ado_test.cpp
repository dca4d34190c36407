// The host's ADO objects, called by the component's own client, over the sample company.
#include <doctest/doctest.h>

#include <functional>
#include <optional>

#include "platform/windows/com_errors.h"
#include "tests/windows/host_ado.h"

namespace velk {
namespace {

TEST_CASE("values come back through the host's ADO objects as they went") {
  const HostAdo ado;
  const auto command = ado.database->newCommand();
  command->setCommandText("SELECT ?, ?, ?, ?");
  const Value values[] = {"D'Souza \xC3\xBC \xE2\x82\xAC", std::int32_t{-7}, 0.1, Null{}};
  const std::int32_t types[] = {200, 3, 5, 200};
  for (std::size_t i = 0; i < 4; ++i) {
    command->Append("Param" + std::to_string(2 * i), types[i], inputParameter, 2048);
    command->setValue(i, values[i]);
  }
  const auto rows = command->Execute(defaultOptions);
  for (std::size_t i = 0; i < 4; ++i) {
    CAPTURE(i);
    CHECK(rows->field(i) == values[i]);
  }
  rows->MoveNext();
  CHECK(rows->isEOF());
  CHECK(rows->NextRecordset() == nullptr);
}

TEST_CASE("a procedure without rows gives a closed record set") {
  const HostAdo ado;
  const auto command = ado.database->newCommand();
  command->setCommandType(CommandType::StoredProcedure);
  command->setCommandText("sp_insert_BankMaster");
  for (const std::size_t i : {0U, 1U}) {
    command->Append("Param" + std::to_string(i), 200, inputParameter, 2048);
    command->setValue(i, Value("X" + std::to_string(i)));
  }
  CHECK(command->Execute(defaultOptions)->State() == stateClosed);
  const auto rows = ado.database->Execute("SELECT BankName FROM BankMaster WHERE BankCode = 'X0'");
  CHECK(rows->field(0) == Value("X1"));
}

TEST_CASE("errors keep their numbers and descriptions on the way") {
  HostAdo ado;
  const auto query = [&] { return ado.database->Execute("SELECT BankCode FROM BankMaster"); };
  const auto foreign = createObject<_Connection>(__uuidof(::Connection));
  const struct {
    std::function<void()> act;
    std::int32_t number;
    std::string_view says;
  } rows[] = {
      {[&] { ado.database->Execute("SELECT * FROM Nowhere"); }, -2147217865, "no such table"},
      {[&] { query()->field(1); }, 3265, "cannot be found"},
      {[&] { ado.database->newCommand()->setValue(0, Null{}); }, 3265, ""},
      {[&] { ado.database->Execute("SELECT 1 WHERE 0")->field(0); }, 3021, "EOF"},
      {[&] { ado.database->Execute("PRAGMA user_version = 1")->isEOF(); }, 3704, "closed"},
      {[&] { adoConnection(foreign.Get())->newCommand(); }, 3001, "another library"},
      {[&] { ado.object->Close(), ado.database->Execute("SELECT 1"); }, 3704, "closed"},
      {[&] { ado.database->newCommand(); }, 3709, "connection"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.number);
    CAPTURE(row.says);
    std::optional<RuntimeError> error;
    try {
      row.act();
    } catch (const RuntimeError& raised) {
      error = raised;
    }
    REQUIRE(error);
    CHECK(error->number() == row.number);
    CHECK(error->description().find(row.says) != std::string::npos);
  }
}

}  // namespace
}  // namespace velk
