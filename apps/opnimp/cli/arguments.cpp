#include "apps/opnimp/cli/arguments.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "apps/opnimp/cli/failures.h"

namespace velk {

namespace {

constexpr std::string_view seeHelp = "; `opnimp --help` shows how it is used";

struct Option {
  std::string_view name;
  bool takesValue;
  bool forPreview;
  bool forExport;
  void (*apply)(Arguments&, const std::string& value);
};

void setOnce(std::optional<std::string>& to, std::string_view name, const std::string& value) {
  if (to) throw UsageError(std::string(name) + " is given twice");
  if (value.empty()) throw UsageError(std::string(name) + " needs a value that is not empty");
  to = value;
}

void addMap(Arguments& arguments, const std::string& value) {
  const std::size_t equals = value.find('=');
  if (equals == std::string::npos || equals == 0 || equals + 1 == value.size()) {
    throw UsageError(R"(--map takes "Field=Column", such as --map "Balance=Amount Due", not ")" +
                     value + "\"");
  }
  arguments.maps.push_back({value.substr(0, equals), value.substr(equals + 1)});
}

constexpr std::array<Option, 6> options{{
    {"--database", true, false, true,
     [](Arguments& a, const std::string& v) { setOnce(a.database, "--database", v); }},
    {"--map", true, true, false, addMap},
    {"--dry-run", false, false, false, [](Arguments& a, const std::string&) { a.dryRun = true; }},
    {"--rejects", true, false, false,
     [](Arguments& a, const std::string& v) { setOnce(a.rejects, "--rejects", v); }},
    {"--app-folder", true, false, true,
     [](Arguments& a, const std::string& v) { setOnce(a.appFolder, "--app-folder", v); }},
    {"--json", false, true, true, [](Arguments& a, const std::string&) { a.json = true; }},
}};

bool asksForHelp(std::string_view arg) {
  return arg == "--help" || arg == "-h";
}

class Parser {
 public:
  explicit Parser(std::span<const std::string> args) : args_(args) {}

  Arguments parse() {
    while (next_ < args_.size()) readOne(args_[next_++]);
    if (help_) return {};
    if (version_) return withTask(Task::Version);
    readWords();
    checkOptions();
    return arguments_;
  }

 private:
  static Arguments withTask(Task task) {
    Arguments arguments;
    arguments.task = task;
    return arguments;
  }

  void readOne(const std::string& arg) {
    if (onlyWords_ || arg.size() < 2 || arg[0] != '-') {
      words_.push_back(arg);
    } else if (arg == "--") {
      onlyWords_ = true;
    } else if (asksForHelp(arg)) {
      help_ = true;
    } else if (arg == "--version") {
      version_ = true;
    } else {
      readOption(arg);
    }
  }

  void readOption(const std::string& arg) {
    const std::size_t equals = arg.find('=');
    const std::string name = arg.substr(0, equals);
    const auto option = std::ranges::find(options, name, &Option::name);
    if (option == options.end()) throw UsageError("there is no option " + name + seeHelp.data());
    if (!option->takesValue && equals != std::string::npos) {
      throw UsageError(name + " takes no value");
    }
    std::string value;
    if (option->takesValue) {
      value = equals != std::string::npos ? arg.substr(equals + 1) : valueBehind(name);
    }
    option->apply(arguments_, value);
    given_.push_back(&*option);
  }

  std::string valueBehind(const std::string& name) {
    if (next_ == args_.size()) throw UsageError(name + " needs a value");
    return args_[next_++];
  }

  void readWords() {
    if (words_.empty()) throw UsageError(std::string("a command is missing") + seeHelp.data());
    const std::string& command = words_[0];
    if (command == "help") return;
    if (command == "demo-database") {
      arguments_.task = Task::DemoDatabase;
      if (words_.size() != 2)
        throw UsageError("demo-database takes one path: that of the new file");
      arguments_.file = words_[1];
    } else if (const auto task = taskOfKind(command)) {
      arguments_.task = *task;
      readKindAndFile(command);
    } else {
      throw UsageError("there is no command \"" + command + "\"" + seeHelp.data());
    }
    if (arguments_.file.empty()) throw UsageError("the path is empty");
  }

  /// The tasks that take a kind and a file.
  static std::optional<Task> taskOfKind(std::string_view command) {
    if (command == "import") return Task::Import;
    if (command == "preview") return Task::Preview;
    if (command == "export") return Task::Export;
    return std::nullopt;
  }

  void readKindAndFile(const std::string& command) {
    if (words_.size() != 3) throw UsageError(command + " takes a kind and a file" + seeHelp.data());
    arguments_.kind = findKind(words_[1]);
    if (arguments_.kind == nullptr) {
      std::string known;
      for (const ImportKind& kind : importKinds()) {
        known.append(known.empty() ? "" : ", ").append(kind.name);
      }
      throw UsageError("there is no kind \"" + words_[1] + "\"; there is: " + known);
    }
    if (arguments_.task == Task::Export && arguments_.kind->type != MasterType::Salesman) {
      throw UsageError("there is no export of the kind " + words_[1] + "; there is: salesman");
    }
    arguments_.file = words_[2];
  }

  void checkOptions() const {
    for (const Option* option : given_) {
      const bool fits = arguments_.task == Task::Import || arguments_.task == Task::Help ||
                        (arguments_.task == Task::Preview && option->forPreview) ||
                        (arguments_.task == Task::Export && option->forExport);
      if (!fits) throw UsageError(std::string(option->name) + " means nothing to " + words_[0]);
    }
  }

  std::span<const std::string> args_;
  std::size_t next_ = 0;
  std::vector<std::string> words_;
  std::vector<const Option*> given_;
  Arguments arguments_;
  bool onlyWords_ = false;
  bool help_ = false;
  bool version_ = false;
};

}  // namespace

Arguments parseArguments(std::span<const std::string> args) {
  return Parser(args).parse();
}

bool asksForJson(std::span<const std::string> args) {
  const auto end = std::ranges::find(args, "--");
  return std::find(args.begin(), end, "--json") != end;
}

}  // namespace velk
