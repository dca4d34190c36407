#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/line_colors.h"
#include "apps/opnimp/opnimp.h"

namespace {

// A signal handler can reach nothing else. NOLINTNEXTLINE(*-avoid-non-const-global-variables)
std::atomic<int> interruptsSeen = 0;
static_assert(std::atomic<int>::is_always_lock_free);

// An import ends with its account, within seconds; a third signal kills at once what is no import,
// or does not end.
extern "C" void onInterrupt(int signalNumber) {
  constexpr int patience = 2;
  if (++interruptsSeen >= patience) std::signal(signalNumber, SIG_DFL);
}

// A signal that was ignored at the start stays so, as under nohup.
void catchSignal(int signalNumber) {
  if (std::signal(signalNumber, onInterrupt) == SIG_IGN) std::signal(signalNumber, SIG_IGN);
}

// Freed when the memory runs out, so that the program can still draw up its account.
// NOLINTNEXTLINE(*-avoid-non-const-global-variables)
std::atomic<char*> reserve = nullptr;

void freeReserve() {
  delete[] reserve.exchange(nullptr);
  throw std::bad_alloc();
}

// Where not even the exception can be told of: in libraries that promise to throw none.
void endWithoutMemory() {
  if (reserve != nullptr) std::abort();
  constexpr std::string_view program = "opnimp: ";
  for (const std::string_view part : {program, velk::memoryRanOut, std::string_view(".\n")}) {
    if (write(STDERR_FILENO, part.data(), part.size()) < 0) break;
  }
  _exit(static_cast<int>(velk::ExitStatus::BrokeOff));
}

// Before all objects of the program are made, which takes memory, too.
[[gnu::constructor(101)]] void prepareToEndWithoutMemory() {
  std::set_terminate(endWithoutMemory);
  constexpr std::size_t size = std::size_t{1} << 20;
  reserve = new char[size];
  std::set_new_handler(freeReserve);
}

}  // namespace

int main(int argc, char** argv) {
  // Memory may hold the password of a database, so it is never written to a core dump.
  constexpr rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
  for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) catchSignal(signalNumber);
  // Neither a message that nobody reads any more nor a file that may grow no longer must kill the
  // program between two calls of a record.
  for (const int signalNumber : {SIGPIPE, SIGXFSZ}) std::signal(signalNumber, SIG_IGN);
  // A caller may start a program without any argument, even without its name.
  const std::vector<std::string> args(argv + std::min(argc, 1), argv + argc);
  const bool colors = velk::wantsColors(std::getenv("TERM"), std::getenv("NO_COLOR"));
  std::optional<velk::LineColors> out;
  std::optional<velk::LineColors> err;
  if (colors && isatty(STDOUT_FILENO) != 0) out.emplace(std::cout);
  if (colors && isatty(STDERR_FILENO) != 0) err.emplace(std::cerr);
  // Progress is drawn on a terminal only, so that a file with the messages stays readable.
  velk::Streams streams{std::cout, std::cerr, isatty(STDERR_FILENO) != 0};
  velk::Surroundings surroundings = velk::realSurroundings();
  surroundings.program = "/proc/self/exe";
  surroundings.interrupted = [] { return interruptsSeen != 0; };
  return velk::runOpnimp(args, streams, surroundings);
}
