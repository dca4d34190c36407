#include "platform/windows/forms/form_class.h"

#include <commctrl.h>

#include "platform/windows/module_path.h"

namespace velk {

namespace {

constexpr wchar_t formClass[] = L"Velk_OpnImp.Form";

}  // namespace

const wchar_t* formClassName(WNDPROC procedure) {
  WNDCLASSEXW form{};
  form.cbSize = sizeof form;
  if (GetClassInfoExW(thisModule(), formClass, &form) == FALSE) {
    const INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    form = {};
    form.cbSize = sizeof form;
    form.lpfnWndProc = procedure;
    form.hInstance = thisModule();
    form.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    form.lpszClassName = formClass;
    RegisterClassExW(&form);
  }
  return formClass;
}

void forgetFormClass() noexcept {
  UnregisterClassW(formClass, thisModule());
}

}  // namespace velk
