#include "platform/windows/ado_command.h"

#include <utility>
#include <vector>

#include "platform/windows/ado_recordset.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

class AdoCommand final : public Command {
 public:
  explicit AdoCommand(ComPtr<_Command> command) : command_(std::move(command)) {}

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

// An object of a newer ADO may answer only to the newer interface id; its members are the same.
ComPtr<_Command> createCommand() {
  const auto unknown = createObject<IUnknown>(__uuidof(::Command));
  auto command = queryInterface<_Command>(unknown.Get());
  if (!command) command = queryInterface<_Command>(unknown.Get(), newerCommandId);
  if (!command) throw RuntimeError(ErrorNumber::CannotCreateObject);
  return command;
}

}  // namespace

std::unique_ptr<Command> adoCommand(const ComPtr<_Connection>& connection) {
  auto command = createCommand();
  call(command, &_Command::putref_ActiveConnection, connection.Get());
  return std::make_unique<AdoCommand>(std::move(command));
}

}  // namespace velk
