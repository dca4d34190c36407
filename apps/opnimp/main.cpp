#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <iostream>
#include <string>
#include <vector>

#include "apps/opnimp/opnimp.h"

namespace {

// A signal handler can reach nothing else. NOLINTNEXTLINE(*-avoid-non-const-global-variables)
volatile std::sig_atomic_t interruptSeen = 0;

// The run ends before its next record; a second signal kills at once.
extern "C" void onInterrupt(int signalNumber) {
  interruptSeen = 1;
  std::signal(signalNumber, SIG_DFL);
}

// A signal that was ignored at the start stays so, as under nohup.
void catchSignal(int signalNumber) {
  if (std::signal(signalNumber, onInterrupt) == SIG_IGN) std::signal(signalNumber, SIG_IGN);
}

}  // namespace

int main(int argc, char** argv) {
  for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) catchSignal(signalNumber);
  // A message that nobody reads any more must not kill the program between two calls of a record.
  std::signal(SIGPIPE, SIG_IGN);
  // A caller may start a program without any argument, even without its name.
  const std::vector<std::string> args(argv + std::min(argc, 1), argv + argc);
  // Progress is drawn on a terminal only, so that a file with the messages stays readable.
  velk::Streams streams{std::cout, std::cerr, isatty(STDERR_FILENO) != 0};
  velk::Surroundings surroundings = velk::realSurroundings();
  surroundings.interrupted = [] { return interruptSeen != 0; };
  return velk::runOpnimp(args, streams, surroundings);
}
