// The program in a shell of the machine: pipes, and what describes it to shells and readers.
#include <doctest/doctest.h>

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <regex>
#include <set>
#include <thread>

#include "tests/support/runner.h"

using namespace velk;

namespace {

std::set<std::string> found(const std::string& text, const char* pattern) {
  const std::regex what(pattern);
  std::set<std::string> all;
  for (std::sregex_iterator at(text.begin(), text.end(), what), end; at != end; ++at) {
    all.insert(at->str(1));
  }
  return all;
}

/// What a command of the system writes.
std::string outputOf(const std::string& command) {
  FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
  REQUIRE(pipe != nullptr);
  std::string text;
  for (int c = 0; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
  CHECK(::pclose(pipe) == 0);
  return text;
}

/// Takes the place of standard input as long as it lives.
class InputFrom {
 public:
  explicit InputFrom(int descriptor) { ::dup2(descriptor, STDIN_FILENO); }
  InputFrom(const InputFrom&) = delete;
  InputFrom& operator=(const InputFrom&) = delete;
  ~InputFrom() {
    ::dup2(kept_, STDIN_FILENO);
    ::close(kept_);
  }

 private:
  const int kept_ = ::dup(STDIN_FILENO);
};

}  // namespace

TEST_CASE("standard input is read to its end, or nothing of it is used") {
  RunnerWorld world;
  const std::vector<std::string> import{
      "import",     world.kind,      "-", "--app-folder", world.folder.path(""),
      "--database", world.database()};
  for (const auto& [path, says] :
       {std::pair{"/", "it is a folder"}, {"/proc/self/mem", "Device I/O error"}}) {
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    const InputFrom input(descriptor);
    ::close(descriptor);
    for (const auto& args : {import, {"convert", world.kind, "-", "-"}}) {
      const Ran ran = world.run(args);
      CHECK(ran.status == 4);
      CHECK(ran.out.empty());
      CHECK_MESSAGE(contains(ran.err, std::string("standard input could not be read: ") + says),
                    ran.err);
    }
  }
  // A writer that pauses, and a reading that does not wait; then one that died within a value.
  for (const auto& [last, status] : {std::pair{"C002,2,2", 2}, {"C002,2,2\n", 0}}) {
    int pipe[2];
    REQUIRE(::pipe2(pipe, O_NONBLOCK | O_CLOEXEC) == 0);
    const InputFrom input(pipe[0]);
    ::close(pipe[0]);
    std::thread writer([to = pipe[1], last = std::string_view(last)] {
      for (const auto part :
           {std::string_view("Customer ID,Bill Amount,Balance\nC001,1,1\n"), last}) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        CHECK(::write(to, part.data(), part.size()) > 0);
      }
      ::close(to);
    });
    const Ran ran = world.run(import);
    writer.join();
    CHECK(ran.status == status);
    CHECK(contains(ran.out, "HARMFUL: Standard input ends within a line") == (status == 2));
    CHECK(debits(world) == (status == 0 ? "2" : "0"));
  }
}

TEST_CASE("manual page and completions know each command, option and kind of the help") {
  RunnerWorld world;
  const auto printed = [&](std::vector<std::string> args) {
    return world.run(std::move(args)).out;
  };
  const std::string manual = std::regex_replace(printed({"man"}), std::regex(R"(\\-)"), "-");
  const std::string bash = printed({"completion", "bash"});
  const std::string zsh = printed({"completion", "zsh"});
  const std::string fish = printed({"completion", "fish"});
  const auto commands = found(printed({"help"}), R"(\n  ([a-z][a-z-]+)  +[a-z])");
  CHECK(commands.size() == 15);
  CHECK(world.run({"completion", "sh"}).status == 3);
  for (const std::string& command : commands) {
    CAPTURE(command);
    CHECK(contains(manual, ".SS opnimp " + command));
    const std::string help = printed({"help", command});
    const bool isOfPages = command == "man" || command == "completion";
    CHECK((isOfPages || contains(help, "Examples:\n  opnimp " + command)));
    for (const std::string& option : found(help, R"(\n  (?:-[a-z],)?--([a-z-]+))")) {
      CAPTURE(option);
      CHECK(std::regex_search(manual, std::regex("--" + option + "[ \n]")));
      for (const std::string& script : {bash, zsh}) {
        const std::size_t at = script.find("    " + command + ")\n");
        CHECK(contains(script.substr(at, script.find(";;", at) - at), "--" + option));
      }
      CHECK(std::regex_search(fish, std::regex("from " + command + "'.* -l " + option + " ")));
    }
  }
  // As the shell runs it.
  const std::string script = world.folder.write("bash", bash);
  const auto completed = [&](const std::string& words, const char* at) {
    return outputOf("bash -euc 'source " + script + "; COMP_WORDS=(opnimp " + words +
                    "); COMP_CWORD=" + at + "; _opnimp; echo ${COMPREPLY[@]}'");
  };
  CHECK(completed("rev", "1") == "reversal\n");
  CHECK(completed("import vendor-", "2") == "vendor-opening\n");
  CHECK(completed("import vendor f.csv --dr", "4") == "--dry-run\n");
  const std::string page = world.folder.write("page", printed({"man"}));
  CHECK(outputOf("groff -man -z -ww " + page) == "");
  CHECK(contains(manual, ".B --map \\(dqField=Column\\(dq"));
}
