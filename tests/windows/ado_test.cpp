// The database through ADO: the machine's own connection and record set, and stubs for commands.
#include "platform/windows/ado_connection.h"
#include "platform/windows/ado_recordset.h"
#include "platform/windows/variants.h"
#include "tests/windows/class_objects.h"
#include "tests/windows/server_dll.h"
#include "tests/windows/stub_object.h"

namespace velk {
namespace {

std::string valueText(const VARIANT& variant) {
  return variant.vt == VT_ERROR ? "missing" : toText(toValue(variant));
}

TEST_CASE("the machine's connection answers at the places that we call") {
  const auto connection = createObject<_Connection>(__uuidof(::Connection), CLSCTX_INPROC_SERVER);
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
  CHECK(errorOf([&] { adoConnection(connection.get())->Execute("select 1"); }) == 3704);
  CHECK(adoConnection(nullptr) == nullptr);
  StubObject<IDispatch> other;
  CHECK(errorOf([&] { adoConnection(other.get()); }) == 13);
}

TEST_CASE("a record set of the machine") {
  const auto rows = createObject<_Recordset>(__uuidof(::Recordset), CLSCTX_INPROC_SERVER);
  const VARIANT missing = Variant::missing().get();
  ComPointer<Fields> fields;
  REQUIRE(rows->get_Fields(fields.receive()) == S_OK);
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
    ComPointer<Field> field;
    REQUIRE(fields->get_Item(Variant(Value(column.name)).get(), field.receive()) == S_OK);
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

/// Stubs that keep a log of what was asked of them.
struct Database {
  StubObject<_Connection> connection;
  StubObject<_Command> command;
  StubObject<Parameters> parameters;
  StubObject<_Parameter> parameter;
  StubObject<_Recordset> closedRows;
  ClassObject commandClass{__uuidof(::Command), command.get()};
  Texts calls;
  HRESULT outcome = S_OK;

  static Database* current;
  static void note(std::string call) { current->calls.push_back(std::move(call)); }

  Database() {
    current = this;
    connection.on(&_Connection::Execute,
                  [](void*, BSTR text, VARIANT*, LONG options, _Recordset** rows) {
                    note(Bstr::textOf(text) + " " + std::to_string(options));
                    return give(&Database::closedRows, rows);
                  });
    command.on(&_Command::putref_ActiveConnection, [](void*, _Connection* active) {
      note(active == current->connection.get() ? "connection" : "other connection");
      return S_OK;
    });
    command.on(&_Command::put_CommandType, [](void*, CommandTypeEnum type) {
      note("type " + std::to_string(type));
      return S_OK;
    });
    command.on(&_Command::put_CommandText, [](void*, BSTR text) {
      note(Bstr::textOf(text));
      return S_OK;
    });
    command.on(&_Command::CreateParameter, [](void*, BSTR name, DataTypeEnum type,
                                              ParameterDirectionEnum direction, ADO_LONGPTR size,
                                              VARIANT value, _Parameter** made) {
      note(Bstr::textOf(name) + " " + std::to_string(type) + " " + std::to_string(direction) + " " +
           std::to_string(size) + " " + valueText(value));
      return give(&Database::parameter, made);
    });
    command.on(&_Command::get_Parameters,
               [](void*, Parameters** list) { return give(&Database::parameters, list); });
    command.on(&_Command::Execute,
               [](void*, VARIANT*, VARIANT* given, LONG options, _Recordset** rows) {
                 note("execute " + valueText(*given) + " " + std::to_string(options));
                 if (current->outcome != S_OK) {
                   return reportError({current->outcome, "said so"}, __uuidof(_Command), L"ADO");
                 }
                 return give(&Database::closedRows, rows);
               });
    parameters.on(&Parameters::Append, [](void*, IDispatch*) {
      note("append");
      return S_OK;
    });
    parameter.on(&_Parameter::put_Value, [](void*, VARIANT value) {
      note("value " + valueText(value));
      return S_OK;
    });
    closedRows.on(&_Recordset::get_State, [](void*, LONG* state) {
      *state = stateClosed;
      return S_OK;
    });
    closedRows.on(&_Recordset::NextRecordset, [](void*, VARIANT*, _Recordset** rows) {
      *rows = nullptr;
      return S_OK;
    });
  }

  /// Gives out a reference to one of the stubs.
  template <class Interface>
  static HRESULT give(StubObject<Interface> Database::*stub, Interface** to) {
    *to = (current->*stub).get();
    (*to)->AddRef();
    return S_OK;
  }
};

Database* Database::current = nullptr;

TEST_CASE("a command passes everything on as it is asked") {
  Database database;
  const auto connection = adoConnection(database.connection.get());
  const auto command = connection->newCommand();
  command->setCommandType(CommandType::StoredProcedure);
  command->Append("Param0", 200, inputParameter, 2048);
  command->setValue(0, "x");
  command->setCommandText("sp_x");
  CHECK(errorOf([&] { command->setValue(1, 2); }) == 3265);
  const auto rows = command->Execute(defaultOptions);
  CHECK(rows->State() == stateClosed);
  CHECK(rows->NextRecordset() == nullptr);
  CHECK(connection->Execute("select é")->State() == stateClosed);
  CHECK(database.calls == Texts{"connection", "type 4", "Param0 200 1 2048 missing", "append",
                                "value x", "sp_x", "execute missing -1", "select é -1"});
}

TEST_CASE("a command's failure keeps its number and description") {
  const struct {
    HRESULT result;
    std::int32_t number;
  } rows[] = {{static_cast<HRESULT>(0x80040E31), -2147217871},
              {static_cast<HRESULT>(0x800A0E7D), 3709},
              {E_FAIL, -2147467259}};
  Database database;
  const auto command = adoConnection(database.connection.get())->newCommand();
  for (const auto& row : rows) {
    CAPTURE(row.number);
    database.outcome = row.result;
    try {
      command->Execute(defaultOptions);
      FAIL("no error");
    } catch (const RuntimeError& error) {
      CHECK(error.number() == row.number);
      CHECK(error.description() == "said so");
    }
  }
}

TEST_CASE("a connection that answers to the newer identifier only") {
  StubObject<IDispatch> newer;
  newer.answer(newerConnectionId, newer.get());
  CHECK(adoConnection(newer.get()) != nullptr);
}

}  // namespace
}  // namespace velk
