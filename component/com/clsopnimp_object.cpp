#include "component/com/clsopnimp_object.h"

#include <array>

#include "component/com/identifiers.h"
#include "platform/windows/ado_connection.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/ole_picture.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

template <class Result>
Result& required(Result* result) {
  if (result == nullptr) throw comError(E_POINTER);
  return *result;
}

VARIANT_BOOL toVariantBool(bool flag) {
  return flag ? VARIANT_TRUE : VARIANT_FALSE;
}

void giveText(BSTR* to, std::string_view text) {
  BSTR& result = required(to);
  result = Bstr(text).release();
}

// In the order of their dispatch identifiers, from 1.
constexpr std::array<ClsOpnImpObject::EntryPoint, 3> entryPoints{
    &Velk_ClsOpnImp::ImportCustomerOpening, &Velk_ClsOpnImp::ImportVendorOpening,
    &Velk_ClsOpnImp::ImportBankBranchOpening};

// Members that calls through IDispatch treat in their own way; the others stand in the IDL.
constexpr DISPID fileNameId = 4;

}  // namespace

// Each member of the interface runs inside this.
template <class Body>
HRESULT ClsOpnImpObject::run(Body&& body) noexcept {
  return guarded(std::forward<Body>(body), [](const RuntimeError& error) {
    return reportError(error, __uuidof(_Velk_ClsOpnImp), programmaticName);
  });
}

// Screens

void ClsOpnImpObject::openScreen(EntryPoint entry, IUnknown* connection, IUnknown* icon) {
  if (!apartment_->isCurrent()) throw comError(RPC_E_WRONG_THREAD);
  auto database = adoConnection(connection);
  std::shared_ptr<const Picture> picture;
  if (icon != nullptr) {
    picture = std::make_shared<OlePicture>(ComPtr<IUnknown>(icon));
  }
  keepLoaded();
  (core_.*entry)(database, picture);
}

HRESULT ClsOpnImpObject::ImportCustomerOpening(_Connection** myConn,
                                               IPictureDisp** AppIcon) noexcept {
  return run([&] { openScreen(entryPoints[0], required(myConn), required(AppIcon)); });
}
HRESULT ClsOpnImpObject::ImportVendorOpening(_Connection** myConn,
                                             IPictureDisp** AppIcon) noexcept {
  return run([&] { openScreen(entryPoints[1], required(myConn), required(AppIcon)); });
}
HRESULT ClsOpnImpObject::ImportBankBranchOpening(_Connection** myConn,
                                                 IPictureDisp** AppIcon) noexcept {
  return run([&] { openScreen(entryPoints[2], required(myConn), required(AppIcon)); });
}

// Record reader

HRESULT ClsOpnImpObject::get_FileName(BSTR* path) noexcept {
  return run([&] { giveText(path, core_.FileName()); });
}
HRESULT ClsOpnImpObject::put_FileName(BSTR path) noexcept {
  return run([&] { core_.FileName(Bstr::textOf(path)); });
}
HRESULT ClsOpnImpObject::MoveNext() noexcept {
  return run([&] { core_.MoveNext(); });
}
HRESULT ClsOpnImpObject::Fields(LONG Index, BSTR* field) noexcept {
  return run([&] { giveText(field, core_.Fields(Index)); });
}
HRESULT ClsOpnImpObject::IsEOF(VARIANT_BOOL* atEnd) noexcept {
  return run([&] { required(atEnd) = toVariantBool(core_.IsEOF()); });
}
HRESULT ClsOpnImpObject::Count(LONG* fields) noexcept {
  return run([&] { required(fields) = core_.Count(); });
}
HRESULT ClsOpnImpObject::Rewind() noexcept {
  return run([&] { core_.Rewind(); });
}
HRESULT ClsOpnImpObject::CSVSplit(BSTR Expression, VARIANT* fields) noexcept {
  return run([&] {
    VARIANT& result = required(fields);
    result = Variant(Velk_ClsOpnImp::CSVSplit(Bstr::textOf(Expression))).release();
  });
}
HRESULT ClsOpnImpObject::ValidateData(SHORT nColumns, _Velk_ClsOpnImp* myCSVFile,
                                      VARIANT_BOOL* valid) noexcept {
  return run([&] {
    VARIANT_BOOL& result = required(valid);
    result = toVariantBool(validate(nColumns, myCSVFile));
  });
}

bool ClsOpnImpObject::validate(std::int16_t columns, IUnknown* file) const {
  if (file == nullptr) throw RuntimeError(ErrorNumber::ObjectNotSet);
  const auto other = queryInterface<ReaderAccess>(file);
  if (!other) throw RuntimeError(ErrorNumber::TypeMismatch);
  return core_.ValidateData(columns, other->reader());
}

HRESULT ClsOpnImpObject::InterfaceSupportsErrorInfo(REFIID iid) noexcept {
  return iid == __uuidof(_Velk_ClsOpnImp) ? S_OK : S_FALSE;
}

// Automation

HRESULT ClsOpnImpObject::GetTypeInfoCount(UINT* count) noexcept {
  return run([&] { required(count) = 1; });
}

HRESULT ClsOpnImpObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
  if (index != 0) return DISP_E_BADINDEX;
  return run([&] {
    ITypeInfo*& result = required(info);
    result = ComPtr<ITypeInfo>(apartment_->typeInfo()).Detach();
  });
}

HRESULT ClsOpnImpObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                       DISPID* ids) noexcept {
  return run([&] { check(apartment_->typeInfo()->GetIDsOfNames(names, count, ids)); });
}

// How many arguments the member takes; DISP_E_MEMBERNOTFOUND for a kind of call that it is not.
UINT ClsOpnImpObject::argumentsOf(DISPID id, bool put) {
  static constexpr std::array<UINT, 11> taken{2, 2, 2, 0, 0, 1, 0, 0, 0, 1, 2};
  const auto index = static_cast<std::size_t>(id) - 1;
  if (index >= taken.size() || (put && id != fileNameId)) throw comError(DISP_E_MEMBERNOTFOUND);
  return put ? 1 : taken[index];
}

Variant ClsOpnImpObject::invokeMember(DISPID id, bool put, const DispatchArguments& given) {
  if (given.count() > argumentsOf(id, put)) throw comError(DISP_E_BADPARAMCOUNT);
  switch (id) {
    case fileNameId:
      if (!put) return Variant(Value(core_.FileName()));
      core_.FileName(given.text(0));
      return {};
    case 5:
      core_.MoveNext();
      return {};
    case 6:
      return Variant(Value(core_.Fields(given.integer(0))));
    case 7:
      return Variant(core_.IsEOF());
    case 8:
      return Variant(Value(core_.Count()));
    case 9:
      core_.Rewind();
      return {};
    case 10:
      return Variant(Velk_ClsOpnImp::CSVSplit(given.text(0)));
    case 11:
      return Variant(validate(given.shortInteger(0), given.object(1).Get()));
    default:
      openScreen(entryPoints[static_cast<std::size_t>(id) - 1], given.object(0).Get(),
                 given.object(1).Get());
      return {};
  }
}

HRESULT ClsOpnImpObject::Invoke(DISPID id, REFIID iid, LCID locale, WORD kind,
                                DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                UINT* badArgument) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  const bool put = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  return guarded(
      [&] {
        const DispatchArguments given(required(parameters), locale, badArgument);
        Variant answer = invokeMember(id, put, given);
        if (result != nullptr) *result = answer.release();
      },
      [&](const RuntimeError& error) {
        if (isDispatchError(error.number())) return toHresult(error);
        return fillIn(exception, error, programmaticName);
      });
}

}  // namespace velk
