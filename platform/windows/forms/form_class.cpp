#include "platform/windows/forms/form_class.h"

#include <commctrl.h>

#include "platform/windows/module_path.h"

namespace velk {

namespace {

constexpr wchar_t className[] = L"Velk_OpnImp.Form";

}  // namespace

const wchar_t* formClassName(WNDPROC procedure) {
  WNDCLASSEXW form{};
  form.cbSize = sizeof form;
  if (GetClassInfoExW(thisModule(), className, &form) == FALSE) {
    const INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    form = {};
    form.cbSize = sizeof form;
    form.lpfnWndProc = procedure;
    form.hInstance = thisModule();
    form.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    form.lpszClassName = className;
    RegisterClassExW(&form);
  }
  return className;
}

void forgetFormClass() noexcept {
  UnregisterClassW(className, thisModule());
}

}  // namespace velk
