// Runs a program on a server that is farther away: each round trip takes longer.
//
//   bench_delayed MICROSECONDS CONNECTION-STRING PROGRAM ARGUMENT...
//
// In place of the argument "@" it gets a connection string that leads through a delay.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "bench/measurement.h"
#include "tests/support/delaying_proxy.h"

int main(int argc, char** argv) {
  int status = EXIT_FAILURE;
  const int failed = velk::bench::runMeasurement([&] {
    velk::bench::require(argc > 3, "usage: bench_delayed MICROSECONDS STRING PROGRAM ARGUMENT...");
    const velk::DelayingProxy proxy(argv[2], std::chrono::microseconds(std::stoi(argv[1])));
    std::string far = proxy.connectionString();
    std::vector<char*> arguments(argv + 3, argv + argc);
    for (char*& argument : arguments) {
      if (std::string(argument) == "@") argument = far.data();
    }
    arguments.push_back(nullptr);
    pid_t child = 0;
    velk::bench::require(
        posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0,
        "the program does not start");
    waitpid(child, &status, 0);
  });
  return failed != EXIT_SUCCESS ? failed : WEXITSTATUS(status);
}
