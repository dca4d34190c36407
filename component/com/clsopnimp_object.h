// The COM object of the public class.
#pragma once

#include <ole2.h>

#include <Velk_OpnImp_com.h>
#include <ado_com.h>
#include <olectl.h>

#include <memory>

#include "component/Velk_ClsOpnImp.h"
#include "component/com/apartment.h"
#include "component/com/dispatch_arguments.h"
#include "platform/windows/com_object.h"

namespace velk {

/// Finds our own object behind an interface pointer. No proxy answers for it.
struct ReaderAccess : IUnknown {
  virtual Velk_ClsOpnImp& STDMETHODCALLTYPE reader() noexcept = 0;
};

}  // namespace velk

__CRT_UUID_DECL(velk::ReaderAccess, 0x57F9688C, 0xB639, 0x4AA3, 0x80, 0x3E, 0x90, 0xE9, 0xD2, 0x72,
                0x8C, 0xDC)

namespace velk {

class ClsOpnImpObject final : public ComObject<_Velk_ClsOpnImp, ISupportErrorInfo, ReaderAccess> {
 public:
  /// A member that opens a screen.
  using EntryPoint = void (Velk_ClsOpnImp::*)(const std::shared_ptr<Connection>&,
                                              const std::shared_ptr<const Picture>&);

  ClsOpnImpObject() : apartment_(Apartment::current()), core_(apartment_->module()) {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) noexcept override;

  HRESULT STDMETHODCALLTYPE ImportCustomerOpening(_Connection** myConn,
                                                  IPictureDisp** AppIcon) noexcept override;
  HRESULT STDMETHODCALLTYPE ImportVendorOpening(_Connection** myConn,
                                                IPictureDisp** AppIcon) noexcept override;
  HRESULT STDMETHODCALLTYPE ImportBankBranchOpening(_Connection** myConn,
                                                    IPictureDisp** AppIcon) noexcept override;
  HRESULT STDMETHODCALLTYPE get_FileName(BSTR* path) noexcept override;
  HRESULT STDMETHODCALLTYPE put_FileName(BSTR path) noexcept override;
  HRESULT STDMETHODCALLTYPE MoveNext() noexcept override;
  HRESULT STDMETHODCALLTYPE Fields(LONG Index, BSTR* field) noexcept override;
  HRESULT STDMETHODCALLTYPE IsEOF(VARIANT_BOOL* atEnd) noexcept override;
  HRESULT STDMETHODCALLTYPE Count(LONG* fields) noexcept override;
  HRESULT STDMETHODCALLTYPE Rewind() noexcept override;
  HRESULT STDMETHODCALLTYPE CSVSplit(BSTR Expression, VARIANT* fields) noexcept override;
  HRESULT STDMETHODCALLTYPE ValidateData(SHORT nColumns, _Velk_ClsOpnImp* myCSVFile,
                                         VARIANT_BOOL* valid) noexcept override;

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override;
  Velk_ClsOpnImp& STDMETHODCALLTYPE reader() noexcept override { return core_; }

 private:
  static UINT argumentsOf(DISPID id, bool put);
  Variant invokeMember(DISPID id, bool put, const DispatchArguments& given);
  template <class Body>
  static HRESULT run(Body&& body) noexcept;

  void openScreen(EntryPoint entry, IUnknown* connection, IUnknown* icon);
  bool validate(std::int16_t columns, IUnknown* file) const;

  std::shared_ptr<Apartment> apartment_;
  Velk_ClsOpnImp core_;
};

}  // namespace velk
