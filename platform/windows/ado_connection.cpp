#include "platform/windows/ado_connection.h"

#include <utility>
#include <vector>

#include "platform/windows/com_errors.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

class AdoRecordset final : public Recordset {
 public:
  explicit AdoRecordset(ComPtr<_Recordset> rows) : rows_(std::move(rows)) {}

  std::int32_t State() const override {
    LONG state = stateClosed;
    call(rows_, &_Recordset::get_State, &state);
    return state;
  }
  bool isEOF() const override { return flag(&_Recordset::get_EOF); }
  bool isBOF() const override { return flag(&_Recordset::get_BOF); }
  void MoveNext() override { call(rows_, &_Recordset::MoveNext); }

  Value field(std::size_t position) const override {
    Variant value;
    call(fieldAt(position), &Field::get_Value, value.receive());
    return toValue(value.get());
  }

  std::shared_ptr<Recordset> NextRecordset() override {
    Variant affected;
    // Stays null after the last result.
    ComPtr<_Recordset> next;
    call(rows_, &_Recordset::NextRecordset, affected.receive(), next.GetAddressOf());
    return adoRecordset(std::move(next));
  }
  void Close() override { call(rows_, &_Recordset::Close); }

 private:
  template <class Member>
  bool flag(Member member) const {
    VARIANT_BOOL set = VARIANT_FALSE;
    call(rows_, member, &set);
    return set != VARIANT_FALSE;
  }

  // A field object gives its column's value of whichever record is current, so one is asked for
  // only once; each call may go to another process.
  const ComPtr<Field>& fieldAt(std::size_t position) const {
    if (position >= fields_.size()) fields_.resize(position + 1);
    ComPtr<Field>& field = fields_[position];
    if (!field) {
      ComPtr<Fields> list;
      call(rows_, &_Recordset::get_Fields, list.GetAddressOf());
      const Variant index(Value(static_cast<std::int32_t>(position)));
      call(list, &Fields::get_Item, index.get(), field.GetAddressOf());
    }
    return field;
  }

  ComPtr<_Recordset> rows_;
  mutable std::vector<ComPtr<Field>> fields_;
};

// An object of a newer ADO may answer only to the newer interface id; its members are the same.
ComPtr<_Command> createCommand() {
  const auto unknown = createObject<IUnknown>(__uuidof(::Command));
  auto command = queryInterface<_Command>(unknown.Get());
  if (!command) command = queryInterface<_Command>(unknown.Get(), newerCommandId);
  if (!command) throw RuntimeError(ErrorNumber::CannotCreateObject);
  return command;
}

class AdoCommand final : public Command {
 public:
  explicit AdoCommand(const ComPtr<_Connection>& connection) : command_(createCommand()) {
    // By reference: the command uses the host's open connection and opens none of its own.
    call(command_, &_Command::putref_ActiveConnection, connection.Get());
  }

  void setCommandType(CommandType type) override {
    call(command_, &_Command::put_CommandType, static_cast<CommandTypeEnum>(type));
  }
  void setCommandText(std::string_view text) override {
    call(command_, &_Command::put_CommandText, Bstr(text).get());
  }

  void Append(std::string_view name, std::int32_t type, std::int32_t direction,
              std::int32_t size) override {
    ComPtr<_Parameter> parameter;  // without a value: that comes with setValue
    call(command_, &_Command::CreateParameter, Bstr(name).get(), static_cast<DataTypeEnum>(type),
         static_cast<ParameterDirectionEnum>(direction), size, Variant::missing().get(),
         parameter.GetAddressOf());
    ComPtr<Parameters> list;
    call(command_, &_Command::get_Parameters, list.GetAddressOf());
    call(list, &Parameters::Append, parameter.Get());
    // Kept, so that a value can be set without asking the collection for each record.
    parameters_.push_back(std::move(parameter));
  }

  void setValue(std::size_t position, const Value& value) override {
    if (position >= parameters_.size()) throw RuntimeError(ErrorNumber::ItemNotFound);
    call(parameters_[position], &_Parameter::put_Value, Variant(value).get());
  }

  std::shared_ptr<Recordset> Execute(std::int32_t options) override {
    Variant affected;
    // Left out, because they are in the command's own collection.
    Variant parameters = Variant::missing();
    VARIANT passed = parameters.get();
    ComPtr<_Recordset> rows;
    call(command_, &_Command::Execute, affected.receive(), &passed, options, rows.GetAddressOf());
    return adoRecordset(std::move(rows));
  }

 private:
  ComPtr<_Command> command_;
  std::vector<ComPtr<_Parameter>> parameters_;
};

class AdoConnection final : public Connection {
 public:
  explicit AdoConnection(ComPtr<_Connection> connection) : connection_(std::move(connection)) {}

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    Variant affected;
    ComPtr<_Recordset> rows;
    call(connection_, &_Connection::Execute, Bstr(text).get(), affected.receive(), defaultOptions,
         rows.GetAddressOf());
    // Some providers answer S_OK and give no record set.
    if (!rows) throw RuntimeError(ErrorNumber::ObjectNotSet);
    return adoRecordset(std::move(rows));
  }

  std::unique_ptr<Command> newCommand() override {
    return std::make_unique<AdoCommand>(connection_);
  }

 private:
  ComPtr<_Connection> connection_;
};

}  // namespace

std::shared_ptr<Connection> adoConnection(IUnknown* object) {
  if (object == nullptr) return nullptr;
  auto connection = queryInterface<_Connection>(object);
  if (!connection) connection = queryInterface<_Connection>(object, newerConnectionId);
  if (!connection) throw RuntimeError(ErrorNumber::TypeMismatch);
  return std::make_shared<AdoConnection>(std::move(connection));
}

std::shared_ptr<Recordset> adoRecordset(ComPtr<_Recordset> rows) {
  return rows ? std::make_shared<AdoRecordset>(std::move(rows)) : nullptr;
}

}  // namespace velk
