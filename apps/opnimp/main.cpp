#include <unistd.h>

#include <csignal>
#include <iostream>
#include <string>
#include <vector>

#include "apps/opnimp/opnimp.h"

namespace {

volatile std::sig_atomic_t interruptSeen = 0;

// The run ends before its next record; a second signal kills at once.
extern "C" void onInterrupt(int signalNumber) {
  interruptSeen = 1;
  std::signal(signalNumber, SIG_DFL);
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGINT, onInterrupt);
  std::signal(SIGTERM, onInterrupt);
  std::signal(SIGHUP, onInterrupt);
  // A message that nobody reads any more must not kill the program between two calls of a record.
  std::signal(SIGPIPE, SIG_IGN);
  const std::vector<std::string> args(argv + 1, argv + argc);
  velk::Streams streams{std::cout, std::cerr, isatty(STDERR_FILENO) != 0};
  velk::Machine machine = velk::realMachine();
  machine.interrupted = [] { return interruptSeen != 0; };
  return velk::runOpnimp(args, streams, machine);
}
