#include "apps/host/ado/ado_command_object.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "apps/host/ado/ado_connection_object.h"
#include "apps/host/ado/ado_recordset_object.h"
#include "apps/host/vtable_object.h"
#include "platform/database.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

/// What one parameter is; the numbers are ADO's codes.
struct ParameterData {
  std::string name;
  std::int32_t type = 0;
  std::int32_t direction = 0;
  std::int32_t size = 0;
  Value value;
};

/// Finds our own parameter from an interface pointer of it.
struct ParameterAccess : IUnknown {
  virtual ParameterData& STDMETHODCALLTYPE data() noexcept = 0;
};

}  // namespace

}  // namespace velk

// This interface is private: only the objects of this program answer it.
__CRT_UUID_DECL(velk::ParameterAccess, 0x7D0A5B42, 0x2E9B, 0x4C36, 0x8F, 0x15, 0x0D, 0xA2, 0x63,
                0xB8, 0x91, 0x4C)

namespace velk {

namespace {

/// A command's parameters in their order. Their values may change until the command runs.
using ParameterList = std::vector<ComPtr<ParameterAccess>>;

class ParameterObject final : public VtableObject<UnusedParameter, _Parameter, ParameterAccess> {
 public:
  explicit ParameterObject(ParameterData data) : data_(std::move(data)) {}

  HRESULT STDMETHODCALLTYPE get_Value(VARIANT* value) noexcept override {
    return give(value, [&] { return Variant(data_.value).release(); });
  }
  HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) noexcept override {
    return run([&] { data_.value = toValue(value); });
  }
  ParameterData& STDMETHODCALLTYPE data() noexcept override { return data_; }

 private:
  ParameterData data_;
};

/// The collection that adds to `list`: Append, of parameter objects of this program only (3421),
/// Count, and Item by position from 0 (3265 beyond the last).
class ParametersObject final : public VtableObject<UnusedParameters, Parameters> {
 public:
  explicit ParametersObject(std::shared_ptr<ParameterList> list) : list_(std::move(list)) {}

  HRESULT STDMETHODCALLTYPE Append(IDispatch* parameter) noexcept override {
    return run([&] {
      auto access = queryInterface<ParameterAccess>(parameter);
      // Another library's parameter could change without our knowing.
      if (!access) throw RuntimeError(ErrorNumber::WrongArgumentType);
      list_->push_back(std::move(access));
    });
  }
  HRESULT STDMETHODCALLTYPE get_Count(LONG* count) noexcept override {
    return give(count, [&] { return static_cast<LONG>(list_->size()); });
  }
  HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, _Parameter** parameter) noexcept override {
    return give(parameter, [&] {
      const auto position = static_cast<std::size_t>(toInt32(toValue(index)));
      if (position >= list_->size()) throw RuntimeError(ErrorNumber::ItemNotFound);
      return queryInterface<_Parameter>((*list_)[position].Get()).Detach();
    });
  }

 private:
  // Shared, because a caller may keep the collection longer than the command.
  std::shared_ptr<ParameterList> list_;
};

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
      // A value that the caller left out arrives as this error code.
      const bool given = value.vt != VT_ERROR || value.scode != DISP_E_PARAMNOTFOUND;
      if (given) data.value = toValue(value);
      return makeObject<ParameterObject>(std::move(data)).Detach();
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
  // Before parameters_, which is made with it.
  std::shared_ptr<ParameterList> list_ = std::make_shared<ParameterList>();
  ComPtr<Parameters> parameters_ = makeObject<ParametersObject>(list_);
};

}  // namespace

ComPtr<_Command> commandObject() {
  return makeObject<CommandObject>();
}

}  // namespace velk
