#include "apps/host/host_output.h"

#include <string>

#include "platform/windows/wide_text.h"

namespace velk {

void say(std::string_view text) {
  AttachConsole(ATTACH_PARENT_PROCESS);  // a program with windows has no console of its own
  // Asked for after the call above, which may give the program its output.
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  const std::string line = std::string(text) + "\n";
  DWORD written = 0;
  const BOOL done =
      WriteFile(output, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  // The program was started from the desktop, where no terminal shows the text.
  if (done == FALSE) MessageBoxW(nullptr, toWide(text).c_str(), hostTitle, MB_ICONINFORMATION);
}

void showError(HWND owner, std::string_view text) {
  MessageBoxW(owner, toWide(text).c_str(), hostTitle, MB_ICONERROR);
}

}  // namespace velk
