// The COM object of the public class.
#pragma once

#include <ole2.h>

#include <Velk_OpnImp_com.h>
#include <ado_com.h>
#include <olectl.h>

#include <memory>

#include "component/Velk_ClsOpnImp.h"
#include "component/com/apartment.h"
#include "component/com/identifiers.h"
#include "platform/windows/reporting_object.h"

namespace velk {

/// Finds our own object from an interface pointer of it. A proxy has no such interface, so the
/// object is of this apartment.
struct ReaderAccess : IUnknown {
  virtual Velk_ClsOpnImp& STDMETHODCALLTYPE reader() noexcept = 0;
};

}  // namespace velk

__CRT_UUID_DECL(velk::ReaderAccess, 0x57F9688C, 0xB639, 0x4AA3, 0x80, 0x3E, 0x90, 0xE9, 0xD2, 0x72,
                0x8C, 0xDC)

namespace velk {

/// Each member of the interface goes to the one of the same name of Velk_ClsOpnImp.
class ClsOpnImpObject final
    : public ReportingObject<programmaticName, _Velk_ClsOpnImp, ReaderAccess> {
 public:
  ClsOpnImpObject() : apartment_(Apartment::current()), core_(apartment_->module()) {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception,
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

  Velk_ClsOpnImp& STDMETHODCALLTYPE reader() noexcept override { return core_; }

 private:
  using EntryPoint = void (Velk_ClsOpnImp::*)(const std::shared_ptr<Connection>&,
                                              const std::shared_ptr<const Picture>&);
  HRESULT openScreen(EntryPoint entry, _Connection** connection, IPictureDisp** icon) noexcept;

  std::shared_ptr<Apartment> apartment_;
  Velk_ClsOpnImp core_;
};

}  // namespace velk
