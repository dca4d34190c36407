#include "apps/host/ado/ado_recordset_object.h"

#include <cstddef>
#include <utility>

#include "apps/host/vtable_object.h"
#include "platform/windows/variants.h"

namespace velk {

namespace {

class FieldObject final : public VtableObject<UnusedField, Field> {
 public:
  FieldObject(std::shared_ptr<Recordset> rows, std::size_t position)
      : rows_(std::move(rows)), position_(position) {}

  HRESULT STDMETHODCALLTYPE get_Value(VARIANT* value) noexcept override {
    // Read only when it is asked for: a field shows the record that is current then.
    return give(value, [&] { return Variant(rows_->field(position_)).release(); });
  }

 private:
  std::shared_ptr<Recordset> rows_;
  std::size_t position_;
};

class FieldsObject final : public VtableObject<UnusedFields, Fields> {
 public:
  explicit FieldsObject(std::shared_ptr<Recordset> rows) : rows_(std::move(rows)) {}

  HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, Field** field) noexcept override {
    return give(field, [&] {
      const std::int32_t position = toInt32(toValue(index));
      // One beyond the last field is an error when its value is read.
      if (position < 0) throw RuntimeError(ErrorNumber::ItemNotFound);
      return makeObject<FieldObject>(rows_, static_cast<std::size_t>(position)).Detach();
    });
  }

 private:
  std::shared_ptr<Recordset> rows_;
};

class RecordsetObject final : public VtableObject<UnusedRecordset, _Recordset> {
 public:
  explicit RecordsetObject(std::shared_ptr<Recordset> rows) : rows_(std::move(rows)) {}

  HRESULT STDMETHODCALLTYPE get_State(LONG* state) noexcept override {
    return give(state, [&] { return rows_->State(); });
  }
  HRESULT STDMETHODCALLTYPE get_EOF(VARIANT_BOOL* atEnd) noexcept override {
    return give(atEnd, [&] { return toVariantBool(rows_->isEOF()); });
  }
  HRESULT STDMETHODCALLTYPE get_BOF(VARIANT_BOOL* atBeginning) noexcept override {
    return give(atBeginning, [&] { return toVariantBool(rows_->isBOF()); });
  }
  HRESULT STDMETHODCALLTYPE MoveNext() noexcept override {
    return run([&] { rows_->MoveNext(); });
  }
  HRESULT STDMETHODCALLTYPE get_Fields(Fields** fields) noexcept override {
    return give(fields, [&] { return makeObject<FieldsObject>(rows_).Detach(); });
  }
  HRESULT STDMETHODCALLTYPE NextRecordset(VARIANT*, _Recordset** next) noexcept override {
    return give(next, [&] { return recordsetObject(rows_->NextRecordset()).Detach(); });
  }
  HRESULT STDMETHODCALLTYPE Close() noexcept override {
    return run([&] { rows_->Close(); });
  }

 private:
  std::shared_ptr<Recordset> rows_;
};

}  // namespace

ComPtr<_Recordset> recordsetObject(std::shared_ptr<Recordset> rows) {
  if (rows == nullptr) return {};
  return makeObject<RecordsetObject>(std::move(rows));
}

}  // namespace velk
