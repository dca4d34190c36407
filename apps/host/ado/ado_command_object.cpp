#include "apps/host/ado/ado_command_object.h"

#include <string>

#include "apps/host/ado/ado_connection_object.h"
#include "apps/host/ado/ado_parameters_object.h"
#include "apps/host/ado/ado_recordset_object.h"
#include "apps/host/vtable_object.h"
#include "platform/database.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

class CommandObject final : public VtableObject<UnusedCommand, _Command> {
 public:
  HRESULT STDMETHODCALLTYPE putref_ActiveConnection(_Connection* connection) noexcept override {
    return run([&] { connection_ = connectionBehind(connection); });
  }
  HRESULT STDMETHODCALLTYPE put_CommandType(CommandTypeEnum type) noexcept override {
    type_ = static_cast<CommandType>(type);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_CommandText(BSTR text) noexcept override {
    return run([&] { text_ = Bstr::textOf(text); });
  }
  HRESULT STDMETHODCALLTYPE CreateParameter(BSTR name, DataTypeEnum type,
                                            ParameterDirectionEnum direction, ADO_LONGPTR size,
                                            VARIANT value,
                                            _Parameter** parameter) noexcept override {
    return give(parameter, [&] {
      ParameterData data{Bstr::textOf(name), type, direction, static_cast<std::int32_t>(size), {}};
      const bool given = value.vt != VT_ERROR || value.scode != DISP_E_PARAMNOTFOUND;
      if (given) data.value = toValue(value);
      return parameterObject(std::move(data)).Detach();
    });
  }
  HRESULT STDMETHODCALLTYPE get_Parameters(Parameters** parameters) noexcept override {
    return give(parameters, [&] { return ComPtr<Parameters>(parameters_).Detach(); });
  }
  HRESULT STDMETHODCALLTYPE Execute(VARIANT*, VARIANT*, LONG options,
                                    _Recordset** rows) noexcept override {
    return give(rows, [&] { return recordsetObject(execute(options)).Detach(); });
  }

 private:
  // Each run makes a command of the database, because text and parameters may have changed.
  std::shared_ptr<Recordset> execute(LONG options) const {
    if (connection_ == nullptr) throw RuntimeError(ErrorNumber::ConnectionInvalid);
    const auto command = connection_->newCommand();
    command->setCommandType(type_);
    command->setCommandText(text_);
    std::size_t position = 0;
    for (const auto& parameter : *list_) {
      const ParameterData& data = parameter->data();
      command->Append(data.name, data.type, data.direction, data.size);
      command->setValue(position++, data.value);
    }
    return command->Execute(options);
  }

  std::shared_ptr<Connection> connection_;
  CommandType type_ = CommandType::Text;
  std::string text_;
  std::shared_ptr<ParameterList> list_ = std::make_shared<ParameterList>();
  ComPtr<Parameters> parameters_ = parametersObject(list_);
};

}  // namespace

ComPtr<_Command> commandObject() {
  return makeObject<CommandObject>();
}

}  // namespace velk
