#include "tests/support/program.h"

#include <doctest/doctest.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <thread>

namespace velk {

namespace {

/// With the end that C wants.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

pid_t start(const TemporaryFolder& folder, std::vector<std::string> args,
            const SystemFaults& faults) {
  args.insert(args.begin(), OPNIMP_PROGRAM);
  std::vector<std::string> settings{"XDG_STATE_HOME=" + folder.path("state"), "PATH=/usr/bin:/bin"};
  if (!faults.empty()) settings.emplace_back("LD_PRELOAD=" OPNIMP_SYSTEM_FAULTS);
  for (const auto& [name, value] : faults) settings.push_back(name + "=" + value);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  const std::string names[] = {folder.path("out"), folder.path("err")};
  for (const int stream : {1, 2}) {
    posix_spawn_file_actions_addopen(&actions, stream, names[stream - 1].c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
  }
  pid_t child = 0;
  REQUIRE(::posix_spawn(&child, OPNIMP_PROGRAM, &actions, nullptr, pointersTo(args).data(),
                        pointersTo(settings).data()) == 0);
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

}  // namespace

Ran runProgram(const TemporaryFolder& folder, const std::vector<std::string>& args,
               const SystemFaults& faults, std::optional<std::chrono::microseconds> killedAfter) {
  const pid_t child = start(folder, args, faults);
  if (killedAfter) {
    std::this_thread::sleep_for(*killedAfter);
    ::kill(child, SIGKILL);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), folder.read("out"),
          folder.read("err")};
}

std::vector<std::string> exportCommand(const TemporaryFolder& folder) {
  return {"export",
          "salesman",
          folder.path("salesmen.xls"),
          "--database",
          folder.path("company.db"),
          "--app-folder",
          folder.path(".")};
}

bool triesAll() {
  return std::getenv("OPNIMP_LONG") != nullptr;
}

}  // namespace velk
