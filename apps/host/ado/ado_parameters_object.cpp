#include "apps/host/ado/ado_parameters_object.h"

#include <utility>

#include "apps/host/vtable_object.h"
#include "platform/windows/variants.h"

namespace velk {

namespace {

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
  std::shared_ptr<ParameterList> list_;
};

}  // namespace

ComPtr<_Parameter> parameterObject(ParameterData data) {
  return makeObject<ParameterObject>(std::move(data));
}

ComPtr<Parameters> parametersObject(std::shared_ptr<ParameterList> list) {
  return makeObject<ParametersObject>(std::move(list));
}

}  // namespace velk
