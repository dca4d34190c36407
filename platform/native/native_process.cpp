#include "platform/native/native_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>

#include "platform/native/descriptor.h"
#include "platform/native/pipe_reading.h"

namespace velk {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> environmentWith(const std::string& variable) {
  const std::string_view name = std::string_view(variable).substr(0, variable.find('=') + 1);
  std::vector<std::string> all{variable};
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (!std::string_view(*entry).starts_with(name)) all.emplace_back(*entry);
  }
  return all;
}

/// The process, with its standard output in the pipe; 0 if it could not be started.
pid_t started(std::vector<std::string> command, const std::string& variable, int pipe) {
  std::vector<std::string> environment = environmentWith(variable);
  posix_spawn_file_actions_t actions;
  if (::posix_spawn_file_actions_init(&actions) != 0) return 0;
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions, pipe, STDOUT_FILENO);
  pid_t process = 0;
  const int failure = ::posix_spawn(&process, command.front().c_str(), &actions, nullptr,
                                    pointersTo(command).data(), pointersTo(environment).data());
  ::posix_spawn_file_actions_destroy(&actions);
  return failure == 0 ? process : 0;
}

}  // namespace

std::optional<Answer> answerOf(const std::vector<std::string>& command, const std::string& variable,
                               std::chrono::milliseconds limit) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const pid_t process = started(command, variable, writing.get());
  if (process == 0) return std::nullopt;
  writing = Descriptor();
  Answer answer;
  constexpr std::size_t longestAnswer = std::size_t{1} << 20U;
  const bool whole =
      readToEnd(reading.get(), answer.output, limit, longestAnswer) == PipeEnd::Whole;
  if (!whole) ::kill(process, SIGKILL);
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  if (!whole || !WIFEXITED(status)) return std::nullopt;
  answer.status = WEXITSTATUS(status);
  return answer;
}

}  // namespace velk
