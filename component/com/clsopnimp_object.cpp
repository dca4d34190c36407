#include "component/com/clsopnimp_object.h"

#include <span>
#include <vector>

#include "platform/windows/ado_connection.h"
#include "platform/windows/ole_picture.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"

namespace velk {

// Screens

HRESULT ClsOpnImpObject::openScreen(EntryPoint entry, _Connection** connection,
                                    IPictureDisp** icon) noexcept {
  if (connection == nullptr || icon == nullptr) return E_POINTER;
  return run([&] {
    // A screen's window belongs to the thread that makes it, its module to the object's.
    if (!apartment_->isCurrent()) throw comError(RPC_E_WRONG_THREAD);
    auto database = adoConnection(*connection);
    std::shared_ptr<const Picture> picture;
    if (*icon != nullptr) picture = std::make_shared<OlePicture>(*icon);
    keepLoaded();
    (core_.*entry)(database, picture);
  });
}

HRESULT ClsOpnImpObject::ImportCustomerOpening(_Connection** myConn,
                                               IPictureDisp** AppIcon) noexcept {
  return openScreen(&Velk_ClsOpnImp::ImportCustomerOpening, myConn, AppIcon);
}
HRESULT ClsOpnImpObject::ImportVendorOpening(_Connection** myConn,
                                             IPictureDisp** AppIcon) noexcept {
  return openScreen(&Velk_ClsOpnImp::ImportVendorOpening, myConn, AppIcon);
}
HRESULT ClsOpnImpObject::ImportBankBranchOpening(_Connection** myConn,
                                                 IPictureDisp** AppIcon) noexcept {
  return openScreen(&Velk_ClsOpnImp::ImportBankBranchOpening, myConn, AppIcon);
}

// Record reader

HRESULT ClsOpnImpObject::get_FileName(BSTR* path) noexcept {
  return give(path, [&] { return Bstr(core_.FileName()).release(); });
}
HRESULT ClsOpnImpObject::put_FileName(BSTR path) noexcept {
  return run([&] { core_.FileName(Bstr::textOf(path)); });
}
HRESULT ClsOpnImpObject::MoveNext() noexcept {
  return run([&] { core_.MoveNext(); });
}
HRESULT ClsOpnImpObject::Fields(LONG Index, BSTR* field) noexcept {
  return give(field, [&] { return Bstr(core_.Fields(Index)).release(); });
}
HRESULT ClsOpnImpObject::IsEOF(VARIANT_BOOL* atEnd) noexcept {
  return give(atEnd, [&] { return toVariantBool(core_.IsEOF()); });
}
HRESULT ClsOpnImpObject::Count(LONG* fields) noexcept {
  return give(fields, [&] { return core_.Count(); });
}
HRESULT ClsOpnImpObject::Rewind() noexcept {
  return run([&] { core_.Rewind(); });
}
HRESULT ClsOpnImpObject::CSVSplit(BSTR Expression, VARIANT* fields) noexcept {
  return give(fields, [&] {
    return Variant(Velk_ClsOpnImp::CSVSplit(Bstr::textOf(Expression))).release();
  });
}
HRESULT ClsOpnImpObject::ValidateData(SHORT nColumns, _Velk_ClsOpnImp* myCSVFile,
                                      VARIANT_BOOL* valid) noexcept {
  return give(valid, [&] {
    if (myCSVFile == nullptr) throw RuntimeError(ErrorNumber::ObjectNotSet);
    const auto other = queryInterface<ReaderAccess>(myCSVFile);
    if (!other) throw RuntimeError(ErrorNumber::TypeMismatch);
    return toVariantBool(core_.ValidateData(nColumns, other->reader()));
  });
}

// Automation: the type library says what there is to call and how.

HRESULT ClsOpnImpObject::GetTypeInfoCount(UINT* count) noexcept {
  return give(count, [] { return 1U; });
}

HRESULT ClsOpnImpObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
  if (index != 0) return DISP_E_BADINDEX;
  return give(info, [&] { return ComPtr<ITypeInfo>(apartment_->typeInfo()).Detach(); });
}

HRESULT ClsOpnImpObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                       DISPID* ids) noexcept {
  return run([&] { check(apartment_->typeInfo()->GetIDsOfNames(names, count, ids)); });
}

// Scripts pass their variables as references to variants, which ITypeInfo::Invoke refuses for a
// typed argument (DISP_E_TYPEMISMATCH). As no member changes its arguments, all go on by value.
// Windows says in `badArgument` which one does not fit; Wine's ITypeInfo leaves it as it was.
HRESULT ClsOpnImpObject::Invoke(DISPID id, REFIID iid, LCID, WORD kind, DISPPARAMS* parameters,
                                VARIANT* result, EXCEPINFO* exception, UINT* badArgument) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (parameters == nullptr) return E_POINTER;
  return guarded(
      [&] {
        std::vector<Variant> values;
        std::vector<VARIANT> passed;
        for (const VARIANT& argument : std::span(parameters->rgvarg, parameters->cArgs)) {
          passed.push_back(values.emplace_back(Variant::copyOf(argument)).get());
        }
        DISPPARAMS byValue = *parameters;
        byValue.rgvarg = passed.data();
        auto* const object = static_cast<_Velk_ClsOpnImp*>(this);
        check(apartment_->typeInfo()->Invoke(object, id, kind, &byValue, result, exception,
                                             badArgument));
      },
      toHresult);
}

}  // namespace velk
