#include "platform/windows/forms/window_class.h"

#include "platform/windows/module_path.h"

namespace velk {

const wchar_t* registeredClass(const wchar_t* name, WNDPROC procedure) {
  // No background brush: these windows erase themselves in a colour of the model.
  WNDCLASSEXW window{};
  window.cbSize = sizeof window;
  window.lpfnWndProc = procedure;
  window.hInstance = thisModule();
  window.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  window.lpszClassName = name;
  RegisterClassExW(&window);  // refuses a class that is known already
  return name;
}

// Windows refuses this while another shell of the process still has a window of the class.
void forgetClasses() noexcept {
  UnregisterClassW(formClass, thisModule());
  UnregisterClassW(frameClass, thisModule());
}

}  // namespace velk
