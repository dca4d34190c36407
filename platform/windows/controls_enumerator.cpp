#include "platform/windows/controls_enumerator.h"

#include <algorithm>
#include <utility>

#include "platform/windows/com_errors.h"
#include "platform/windows/com_object.h"
#include "platform/windows/named_members.h"
#include "platform/windows/variants.h"

namespace velk {

namespace {

class ControlsEnumerator final : public ComObject<IEnumVARIANT> {
 public:
  ControlsEnumerator(std::weak_ptr<Form> form, MakeControlObject make, std::size_t next = 0)
      : form_(std::move(form)), make_(make), next_(next) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) noexcept override {
    if (items == nullptr) return E_POINTER;
    ULONG given = 0;
    const std::size_t before = next_;
    const HRESULT result = guarded(
        [&] {
          const auto form = lock(form_);
          for (; given < count && next_ < form->controls().size(); ++given, ++next_) {
            items[given] = Variant(make_(form_, *form->controls()[next_]).Get()).release();
          }
        },
        toHresult);
    if (FAILED(result)) {  // all or nothing: the caller frees what he was told of only
      std::for_each_n(items, given, [](VARIANT& item) { VariantClear(&item); });
      given = 0;
      next_ = before;
    }
    if (fetched != nullptr) *fetched = given;
    if (FAILED(result)) return result;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
    const auto form = form_.lock();
    const std::size_t left = form == nullptr ? 0 : form->controls().size() - next_;
    next_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() noexcept override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) noexcept override {
    if (copy == nullptr) return E_POINTER;
    *copy = nullptr;
    return guarded([&] { *copy = makeObject<ControlsEnumerator>(form_, make_, next_).Detach(); },
                   toHresult);
  }

 private:
  std::weak_ptr<Form> form_;
  MakeControlObject make_;
  std::size_t next_;
};

}  // namespace

ComPtr<IEnumVARIANT> controlsEnumerator(std::weak_ptr<Form> form, MakeControlObject make) {
  return makeObject<ControlsEnumerator>(std::move(form), make);
}

}  // namespace velk
