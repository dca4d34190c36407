#include "apps/host/import_component.h"

#include <Velk_OpnImp_com.h>
#include <olectl.h>

#include <array>

#include "apps/host/host_errors.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/module_path.h"
#include "platform/windows/wide_text.h"

namespace velk {

ComPtr<IPictureDisp> iconPicture(HICON icon) {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ICON;
  description.icon.hicon = icon;
  ComPtr<IPictureDisp> picture;
  // FALSE: the picture does not own the icon, which lives as long as the program.
  check(OleCreatePictureIndirect(&description, IID_IPictureDisp, FALSE,
                                 reinterpret_cast<void**>(picture.GetAddressOf())));
  return picture;
}

void openImport(ImportScreenKind kind, _Connection* connection, IPictureDisp* icon) {
  using EntryPoint = HRESULT (STDMETHODCALLTYPE _Velk_ClsOpnImp::*)(_Connection**, IPictureDisp**);
  // In the order of ImportScreenKind.
  static constexpr std::array<EntryPoint, 3> entryPoints{&_Velk_ClsOpnImp::ImportCustomerOpening,
                                                         &_Velk_ClsOpnImp::ImportVendorOpening,
                                                         &_Velk_ClsOpnImp::ImportBankBranchOpening};
  CLSID classId;
  if (FAILED(CLSIDFromProgID(L"Velk_OpnImp.Velk_ClsOpnImp", &classId))) {
    const RuntimeError error(ErrorNumber::CannotCreateObject);
    throw explained(error,
                    "The import screens cannot be opened: Velk_OpnImp.dll or "
                    "Velk_OpnImp.Assembly.manifest does not lie beside " +
                        fromWide(modulePath(nullptr)),
                    "Copy both there, and start the program anew.");
  }
  const auto component = createObject<_Velk_ClsOpnImp>(classId);
  call(component, entryPoints.at(static_cast<std::size_t>(kind)), &connection, &icon);
}

}  // namespace velk
