// The database through ADO: the machine's own connection and record set.
#include "platform/windows/ado_connection.h"
#include "platform/windows/variants.h"
#include "tests/windows/server_dll.h"
#include "tests/windows/stub_object.h"

namespace velk {
namespace {

TEST_CASE("the machine's connection answers at the places that we call") {
  const auto connection = createObject<_Connection>(__uuidof(::Connection));
  LONG number = 9;
  Bstr text;
  CHECK(connection->get_State(&number) == S_OK);
  CHECK(number == stateClosed);
  CHECK(connection->get_CommandTimeout(&number) == S_OK);
  CHECK(number == 30);
  CHECK(connection->put_ConnectionString(Bstr("provider=none;").get()) == S_OK);
  CHECK(connection->get_ConnectionString(text.receive()) == S_OK);
  CHECK(text.text() == "provider=none;");
  CHECK(FAILED(connection->Open(nullptr, nullptr, nullptr, -1)));
  CHECK(connection->Close() == static_cast<HRESULT>(0x800A0E78));
  CHECK(errorOf([&] { adoConnection(connection.Get())->Execute("select 1"); }) == 3704);
  CHECK(adoConnection(nullptr) == nullptr);
  StubObject<IDispatch> other;
  CHECK(errorOf([&] { adoConnection(other.get()); }) == 13);
}

TEST_CASE("a record set of the machine") {
  const auto rows = createObject<_Recordset>(__uuidof(::Recordset));
  const VARIANT missing = Variant::missing().get();
  ComPtr<Fields> fields;
  REQUIRE(rows->get_Fields(fields.GetAddressOf()) == S_OK);
  const struct {
    const char* name;
    DataTypeEnum type;
    Value value;
  } columns[] = {{"code", adVarWChar, "Zoë"},
                 {"count", adInteger, 7},
                 {"amount", adDouble, 1.5},
                 {"on", adDate, Date{39538.25}},
                 {"none", adInteger, Null{}}};
  for (const auto& column : columns) {
    REQUIRE(fields->Append(Bstr(column.name).get(), column.type, 20, adFldMayBeNull, missing) ==
            S_OK);
  }
  REQUIRE(rows->Open(missing, missing, adOpenStatic, adLockBatchOptimistic, -1) == S_OK);
  REQUIRE(rows->AddNew(missing, missing) == S_OK);
  for (const auto& column : columns) {
    ComPtr<Field> field;
    REQUIRE(fields->get_Item(Variant(Value(column.name)).get(), field.GetAddressOf()) == S_OK);
    REQUIRE(field->put_Value(Variant(column.value).get()) == S_OK);
  }
  REQUIRE(rows->MoveFirst() == S_OK);

  const auto read = adoRecordset(rows);
  CHECK(read->State() == stateOpen);
  CHECK_FALSE(read->isEOF());
  for (std::size_t i = 0; i < std::size(columns); ++i) {
    CAPTURE(i);
    CHECK((read->field(i) == columns[i].value));
    CHECK((read->field(i) == columns[i].value));
  }
  CHECK(errorOf([&] { read->field(std::size(columns)); }) == 3265);
  read->MoveNext();
  CHECK(read->isEOF());
  CHECK_FALSE(read->isBOF());
  read->Close();
  CHECK(read->State() == stateClosed);
  CHECK(errorOf([&] { read->Close(); }) == 3704);
}

TEST_CASE("a connection that answers to the newer identifier only") {
  StubObject<IDispatch> newer;
  newer.answer(newerConnectionId, newer.get());
  CHECK(adoConnection(newer.get()) != nullptr);
}

}  // namespace
}  // namespace velk
