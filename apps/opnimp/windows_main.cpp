#include <windows.h>

#include <shellapi.h>

#include <fcntl.h>
#include <io.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "apps/opnimp/cli/line_colors.h"
#include "apps/opnimp/opnimp.h"
#include "platform/windows/module_path.h"
#include "platform/windows/wide_text.h"

namespace {

// A handler can reach nothing else. NOLINTNEXTLINE(*-avoid-non-const-global-variables)
std::atomic<int> interruptsSeen = 0;

// An import ends with its account, within seconds; a third Ctrl+C ends at once what is no import,
// or does not end. A console that is closed leaves five seconds, whatever is answered here.
BOOL WINAPI onInterrupt(DWORD /*event*/) {
  constexpr int patience = 2;
  return ++interruptsSeen <= patience ? TRUE : FALSE;
}

std::vector<std::string> commandLine() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> result;
  for (int i = 1; i < count; ++i) result.push_back(velk::fromWide(words[i]));
  LocalFree(words);
  return result;
}

bool isConsole(DWORD stream) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(stream), &mode) != FALSE;
}

/// A console of Windows 10 or later, asked to.
bool showsColors(DWORD stream) {
  DWORD mode = 0;
  const HANDLE console = GetStdHandle(stream);
  return GetConsoleMode(console, &mode) != FALSE &&
         SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}

/// What is written is UTF-8, as its bytes stand; a console shows it so until the program ends.
class ConsoleEncoding {
 public:
  ConsoleEncoding() : before_(GetConsoleOutputCP()) {
    SetConsoleOutputCP(CP_UTF8);
    for (std::FILE* const stream : {stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  }
  ~ConsoleEncoding() { SetConsoleOutputCP(before_); }
  ConsoleEncoding(const ConsoleEncoding&) = delete;
  ConsoleEncoding& operator=(const ConsoleEncoding&) = delete;

 private:
  UINT before_;
};

}  // namespace

int main() {
  // No box of the system must wait for somebody who is not there.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetConsoleCtrlHandler(onInterrupt, TRUE);
  const ConsoleEncoding encoding;
  const bool colors = velk::wantsColors("console", std::getenv("NO_COLOR"));
  std::optional<velk::LineColors> out;
  std::optional<velk::LineColors> err;
  if (colors && showsColors(STD_OUTPUT_HANDLE)) out.emplace(std::cout);
  if (colors && showsColors(STD_ERROR_HANDLE)) err.emplace(std::cerr);
  velk::Streams streams{std::cout, std::cerr, isConsole(STD_ERROR_HANDLE)};
  velk::Surroundings surroundings = velk::realSurroundings();
  surroundings.program = velk::fromWide(velk::modulePath(nullptr));
  surroundings.interrupted = [] { return interruptsSeen != 0; };
  return velk::runOpnimp(commandLine(), streams, surroundings);
}
