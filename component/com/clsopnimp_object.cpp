#include "component/com/clsopnimp_object.h"

#include <Velk_OpnImp_com.h>
#include <ado_com.h>
#include <olectl.h>

#include <memory>
#include <span>
#include <vector>

#include "component/Velk_ClsOpnImp.h"
#include "component/com/apartment.h"
#include "component/com/identifiers.h"
#include "platform/windows/ado_connection.h"
#include "platform/windows/ole_picture.h"
#include "platform/windows/reporting_object.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

/// Finds our own object from an interface pointer of it. A proxy has no such interface, so the
/// object is of this apartment.
struct ReaderAccess : IUnknown {
  virtual Velk_ClsOpnImp& STDMETHODCALLTYPE reader() noexcept = 0;
};

}  // namespace

}  // namespace velk

// Outside the namespace, because the macro specializes a template of the global one.
__CRT_UUID_DECL(velk::ReaderAccess, 0x57F9688C, 0xB639, 0x4AA3, 0x80, 0x3E, 0x90, 0xE9, 0xD2, 0x72,
                0x8C, 0xDC)

namespace velk {

namespace {

/// Each member of the interface goes to the one of the same name of Velk_ClsOpnImp.
class ClsOpnImpObject final
    : public ReportingObject<programmaticName, _Velk_ClsOpnImp, ReaderAccess> {
 public:
  ClsOpnImpObject() : apartment_(Apartment::current()), core_(apartment_->module()) {}

  // Screens

  HRESULT STDMETHODCALLTYPE ImportCustomerOpening(_Connection** myConn,
                                                  IPictureDisp** AppIcon) noexcept override {
    return openScreen(&Velk_ClsOpnImp::ImportCustomerOpening, myConn, AppIcon);
  }
  HRESULT STDMETHODCALLTYPE ImportVendorOpening(_Connection** myConn,
                                                IPictureDisp** AppIcon) noexcept override {
    return openScreen(&Velk_ClsOpnImp::ImportVendorOpening, myConn, AppIcon);
  }
  HRESULT STDMETHODCALLTYPE ImportBankBranchOpening(_Connection** myConn,
                                                    IPictureDisp** AppIcon) noexcept override {
    return openScreen(&Velk_ClsOpnImp::ImportBankBranchOpening, myConn, AppIcon);
  }

  // Record reader

  HRESULT STDMETHODCALLTYPE get_FileName(BSTR* path) noexcept override {
    return give(path, [&] { return Bstr(core_.FileName()).release(); });
  }
  HRESULT STDMETHODCALLTYPE put_FileName(BSTR path) noexcept override {
    return run([&] { core_.FileName(Bstr::textOf(path)); });
  }
  HRESULT STDMETHODCALLTYPE MoveNext() noexcept override {
    return run([&] { core_.MoveNext(); });
  }
  HRESULT STDMETHODCALLTYPE Fields(LONG Index, BSTR* field) noexcept override {
    return give(field, [&] { return Bstr(core_.Fields(Index)).release(); });
  }
  HRESULT STDMETHODCALLTYPE IsEOF(VARIANT_BOOL* atEnd) noexcept override {
    return give(atEnd, [&] { return toVariantBool(core_.IsEOF()); });
  }
  HRESULT STDMETHODCALLTYPE Count(LONG* fields) noexcept override {
    return give(fields, [&] { return core_.Count(); });
  }
  HRESULT STDMETHODCALLTYPE Rewind() noexcept override {
    return run([&] { core_.Rewind(); });
  }
  HRESULT STDMETHODCALLTYPE CSVSplit(BSTR Expression, VARIANT* fields) noexcept override {
    return give(fields, [&] {
      return Variant(Velk_ClsOpnImp::CSVSplit(Bstr::textOf(Expression))).release();
    });
  }
  HRESULT STDMETHODCALLTYPE ValidateData(SHORT nColumns, _Velk_ClsOpnImp* myCSVFile,
                                         VARIANT_BOOL* valid) noexcept override {
    return give(valid, [&] {
      if (myCSVFile == nullptr) throw RuntimeError(ErrorNumber::ObjectNotSet);
      const auto other = queryInterface<ReaderAccess>(myCSVFile);
      if (!other) throw RuntimeError(ErrorNumber::TypeMismatch);
      return toVariantBool(core_.ValidateData(nColumns, other->reader()));
    });
  }

  // Automation: the type library says what there is to call and how.

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    return give(count, [] { return 1U; });
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
    if (index != 0) return DISP_E_BADINDEX;
    return give(info, [&] { return ComPtr<ITypeInfo>(apartment_->typeInfo()).Detach(); });
  }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) noexcept override {
    return run([&] { check(apartment_->typeInfo()->GetIDsOfNames(names, count, ids)); });
  }

  // Scripts pass their variables as references to variants, which ITypeInfo::Invoke refuses for a
  // typed argument (DISP_E_TYPEMISMATCH). As no member changes its arguments, all go on by value.
  // Windows says in `badArgument` which one does not fit; Wine's ITypeInfo leaves it as it was.
  // The entry points do not go through the type library: for their connection it needs ADO's, which
  // may be missing, and it would insist on the older of ADO's two interface ids.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) noexcept override {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (parameters == nullptr) return E_POINTER;
    return guarded(
        [&] {
          std::vector<Variant> values;
          std::vector<VARIANT> passed;
          for (const VARIANT& argument : std::span(parameters->rgvarg, parameters->cArgs)) {
            passed.push_back(values.emplace_back(Variant::copyOf(argument)).get());
          }
          if (const EntryPoint entry = entryPoint(id); entry != nullptr) {
            return check(invokeEntryPoint(entry, kind, passed, exception));
          }
          DISPPARAMS byValue = *parameters;
          byValue.rgvarg = passed.data();
          auto* const object = static_cast<_Velk_ClsOpnImp*>(this);
          check(apartment_->typeInfo()->Invoke(object, id, kind, &byValue, result, exception,
                                               badArgument));
        },
        toHresult);
  }

  Velk_ClsOpnImp& STDMETHODCALLTYPE reader() noexcept override { return core_; }

 private:
  using EntryPoint = void (Velk_ClsOpnImp::*)(const std::shared_ptr<Connection>&,
                                              const std::shared_ptr<const Picture>&);

  static EntryPoint entryPoint(DISPID id) {
    switch (id) {  // as the type library numbers them
      case 1:
        return &Velk_ClsOpnImp::ImportCustomerOpening;
      case 2:
        return &Velk_ClsOpnImp::ImportVendorOpening;
      case 3:
        return &Velk_ClsOpnImp::ImportBankBranchOpening;
      default:
        return nullptr;
    }
  }

  /// By value, as a late-bound call passes them: the last argument first.
  HRESULT invokeEntryPoint(EntryPoint entry, WORD kind, std::span<const VARIANT> arguments,
                           EXCEPINFO* exception) {
    if ((kind & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
    if (arguments.size() != 2) return DISP_E_BADPARAMCOUNT;
    for (const VARIANT& argument : arguments) {
      if (argument.vt != VT_DISPATCH && argument.vt != VT_UNKNOWN) return DISP_E_TYPEMISMATCH;
    }
    return guarded([&] { show(entry, arguments[1].punkVal, arguments[0].punkVal); },
                   [&](const RuntimeError& error) {
                     const HRESULT failed = fillIn(exception, error);
                     if (exception != nullptr) {
                       exception->bstrSource = SysAllocString(programmaticName);
                     }
                     return failed;
                   });
  }

  HRESULT openScreen(EntryPoint entry, _Connection** connection, IPictureDisp** icon) noexcept {
    if (connection == nullptr || icon == nullptr) return E_POINTER;
    return run([&] { show(entry, *connection, *icon); });
  }

  void show(EntryPoint entry, IUnknown* connection, IUnknown* icon) {
    // A screen's window belongs to the thread that makes it, its module to the object's.
    if (!apartment_->isCurrent()) throw comError(RPC_E_WRONG_THREAD);
    auto database = adoConnection(connection);
    std::shared_ptr<const Picture> picture;
    if (icon != nullptr) picture = std::make_shared<OlePicture>(icon);
    // Before the screen opens: from then on its window calls code of this DLL.
    keepLoaded();
    (core_.*entry)(database, picture);
  }

  std::shared_ptr<Apartment> apartment_;
  Velk_ClsOpnImp core_;
};

}  // namespace

ComPtr<IUnknown> clsOpnImpObject() {
  // The object has several bases with an IUnknown; this names the one to use.
  return ComPtr<_Velk_ClsOpnImp>(makeObject<ClsOpnImpObject>());
}

}  // namespace velk
