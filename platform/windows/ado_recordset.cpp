#include "platform/windows/ado_recordset.h"

#include <utility>
#include <vector>

#include "platform/windows/variants.h"

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

}  // namespace

std::shared_ptr<Recordset> adoRecordset(ComPtr<_Recordset> rows) {
  return rows ? std::make_shared<AdoRecordset>(std::move(rows)) : nullptr;
}

}  // namespace velk
