#include "platform/windows/ole_picture.h"

#include <ocidl.h>
#include <olectl.h>

#include "base/errors.h"

namespace velk {

HICON OlePicture::icon() const {
  const auto picture = queryInterface<IPicture>(picture_.Get(), IID_IPicture);
  SHORT type = PICTYPE_UNINITIALIZED;
  OLE_HANDLE handle = 0;
  const bool isIcon = picture && SUCCEEDED(picture->get_Type(&type)) && type == PICTYPE_ICON &&
                      SUCCEEDED(picture->get_Handle(&handle)) && handle != 0;
  if (!isIcon) throw RuntimeError(ErrorNumber::InvalidPicture);
  // Automation passes 32 bits of a handle; the others repeat its sign.
  return reinterpret_cast<HICON>(static_cast<INT_PTR>(static_cast<INT>(handle)));
}

}  // namespace velk
