#include "platform/windows/forms/window_class.h"

#include "platform/windows/module_path.h"

namespace velk {

void registerClass(const wchar_t* name, WNDPROC procedure, int extraBytes) {
  WNDCLASSEXW known{};
  known.cbSize = sizeof known;
  if (GetClassInfoExW(thisModule(), name, &known) != FALSE) return;
  WNDCLASSEXW window{};
  window.cbSize = sizeof window;
  window.lpfnWndProc = procedure;
  window.cbWndExtra = extraBytes;
  window.hInstance = thisModule();
  window.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  window.lpszClassName = name;
  RegisterClassExW(&window);
}

void forgetClasses() noexcept {
  UnregisterClassW(formClass, thisModule());
  UnregisterClassW(frameClass, thisModule());
}

}  // namespace velk
