#include "apps/opnimp/cli/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"

namespace velk {

namespace {

using enum Arguments::Command;

struct CommandRow {
  Arguments::Command command;
  std::string name;
  std::string file;  ///< its last word: what the path is of
  std::string what;
};

struct Option {
  std::string name;
  std::string value{};                       ///< what follows it; empty: it is a flag
  std::vector<Arguments::Command> commands;  ///< that take it
  std::string what;
  std::optional<std::string> Arguments::*text = nullptr;
  bool Arguments::*flag = nullptr;
};

// Line breaks are made by hand: the library indents lines, but does not break them.
const std::vector<CommandRow> commandRows{
    {Import, "import", "the file with the records", "post the file's records to the database"},
    {Preview, "preview", "the file with the records",
     "show the columns, what maps to what, and the first rows;\nneeds no database"},
    {Export, "export", "the workbook to write",
     "write all salesmen to an .xls workbook, with drop-down lists of\n"
     "their DS types; a workbook of that name is replaced"},
    {DemoDatabase, "demo-database", "the new file", "make the sample company's embedded database"}};

const std::vector<Option> optionRows{
    {.name = "--database",
     .value = "STRING",
     .commands = {Import, Export},
     .what = "an ODBC connection string, or the path of an embedded database\n"
             "(default: opnimp.db in the current folder, made with the sample\n"
             "company on first use)",
     .text = &Arguments::database},
    {.name = "--map",
     .value = "\"Field=Column\"",
     .commands = {Import, Preview},
     .what = "map a column of the file, by its title or as #N for the Nth, to a\n"
             "field; on top of those whose titles match; may be repeated"},
    {.name = "--dry-run",
     .commands = {Import},
     .what = "every check runs, nothing is posted",
     .flag = &Arguments::dryRun},
    {.name = "--rejects",
     .value = "FILE",
     .commands = {Import},
     .what = "write the refused records to FILE, to be corrected and imported\n"
             "again; why to FILE.reasons.csv, records to look up to\n"
             "FILE.check.csv, records that were not reached to FILE.rest.csv\n"
             "(for a workbook all but the reasons are workbooks:\n"
             "FILE.check.xls); a .check or .rest file of an earlier run must\n"
             "be dealt with and moved away first",
     .text = &Arguments::rejects},
    {.name = "--app-folder",
     .value = "DIR",
     .commands = {Import, Export},
     .what = "where Error.log is written (default: the current folder)",
     .text = &Arguments::appFolder},
    {.name = "--json",
     .commands = {Import, Preview, Export},
     .what = "one JSON document on standard output instead of text",
     .flag = &Arguments::json}};

const std::string footer =
    R"(`opnimp help COMMAND` lists the kinds and options of a command; after "--" follows no option.

Exit status:
  0  everything was posted, or exported
  1  some records were not, or not wholly: see the report
  2  refused: the file, its columns or the mapping do not do, or the file to export to is open
     in another program; nothing was imported or exported
  3  the command line makes no sense
  4  a file or the database could not be opened or written; nothing was imported or exported
  5  the run broke off, or its account does not add up)";

const char* const kindWord = "KIND";
const char* const pathWord = "FILE";

bool takesKind(Arguments::Command command) {
  return command != DemoDatabase;
}

// Only salesmen have a screen with an Export button.
bool takes(Arguments::Command command, const ImportKind& kind) {
  return command != Export || kind.type == MasterType::Salesman;
}

bool takes(Arguments::Command command, const Option& option) {
  return std::ranges::count(option.commands, command) > 0;
}

/// The kinds that a command takes: by name, or a line each with what they are.
std::string kindsOf(Arguments::Command command, bool described) {
  std::string list;
  for (const ImportKind& kind : importKinds()) {
    if (!takes(command, kind)) continue;
    const std::string name(kind.name);
    if (!list.empty()) list += described ? "\n" : ", ";
    list += described ? padRight(name, 18).append(kind.what) : name;
  }
  return list;
}

// All values are taken here and judged later: the library would refuse a second --map.
CLI::Option& add(CLI::App& app, const Option& option) {
  CLI::Option* const added = option.value.empty()
                                 ? app.add_flag(option.name, option.what)
                                 : app.add_option(option.name, option.what)->take_all();
  return *added->type_name(option.value);
}

void addCommand(CLI::App& app, const CommandRow& row) {
  CLI::App& command = *app.add_subcommand(row.name, row.what)->fallthrough()->group("Commands");
  if (takesKind(row.command)) {
    command.add_option(kindWord)->required()->description(kindsOf(row.command, true));
  }
  command.add_option(pathWord, row.file)->required();
  for (const Option& option : optionRows) {
    if (takes(row.command, option)) add(command, option);
  }
}

std::unique_ptr<CLI::App> makeApp() {
  auto app = std::make_unique<CLI::App>(
      "opnimp imports opening data from files, and exports salesmen to be edited and imported "
      "again.\n",
      "opnimp");
  CLI::Formatter& form = dynamic_cast<CLI::Formatter&>(*app->get_formatter());
  form.column_width(28);
  form.label("REQUIRED", "");
  form.label("Positionals", "Arguments");
  form.label("SUBCOMMAND", "COMMAND");
  app->set_help_flag("-h,--help", "show how the program or a command is used");
  app->set_version_flag("--version", std::string("opnimp " OPNIMP_VERSION "\n"),
                        "show the version");
  app->footer(footer)->require_subcommand(1);
  for (const CommandRow& row : commandRows) addCommand(*app, row);
  // Options may precede the command, and one that the command does not take has an error of its
  // own: the program itself takes all of them, without listing them in its help.
  for (const Option& option : optionRows) add(*app, option).group("");
  return app;
}

/// The library would take the next argument for the value in "--database=", and one for a flag.
void checkEquals(std::span<const std::string> args) {
  for (const std::string& arg : args) {
    if (arg == "--") return;
    const std::size_t equals = arg.find('=');
    const auto option = std::ranges::find(optionRows, arg.substr(0, equals), &Option::name);
    if (equals == std::string::npos || option == optionRows.end()) continue;
    if (option->value.empty()) throw UsageError(option->name + " takes no value");
    if (equals + 1 == arg.size()) {
      throw UsageError(option->name + " needs a value that is not empty");
    }
  }
}

const CommandRow& commandOf(const CLI::App& app) {
  const std::string name = app.get_subcommands().front()->get_name();
  return *std::ranges::find(commandRows, name, &CommandRow::name);
}

/// Why the library refused the command line.
std::string refusal(const CLI::App& app) {
  std::vector<std::string> extra = app.remaining();
  std::erase(extra, "--");
  const auto isOption = [](const std::string& arg) { return arg.size() > 1 && arg[0] == '-'; };
  const auto option = std::ranges::find_if(extra, isOption);
  if (option != extra.end()) return "there is no option " + option->substr(0, option->find('='));
  if (!app.get_subcommands().empty()) {
    const CommandRow& row = commandOf(app);
    return row.name + " takes " +
           (takesKind(row.command) ? "a kind and a file" : "one path: that of the new file");
  }
  return extra.empty() ? "a command is missing" : "there is no command \"" + extra[0] + "\"";
}

const ImportKind* kindNamed(const std::string& name, Arguments::Command command) {
  const ImportKind* const kind = findKind(name);
  if (kind != nullptr && takes(command, *kind)) return kind;
  throw UsageError((kind == nullptr ? "there is no kind \"" + name + "\""
                                    : "there is no export of the kind " + name) +
                   "; there is: " + kindsOf(command, false));
}

MapOption mapOption(const std::string& value) {
  const std::size_t equals = value.find('=');
  if (equals == std::string::npos || equals == 0 || equals + 1 == value.size()) {
    throw UsageError(R"(--map takes "Field=Column", such as --map "Balance=Amount Due", not ")" +
                     value + "\"");
  }
  return {value.substr(0, equals), value.substr(equals + 1)};
}

void apply(const Option& option, const std::vector<std::string>& values, Arguments& to) {
  if (option.flag != nullptr) {
    to.*option.flag = true;
  } else if (option.text == nullptr) {
    std::ranges::transform(values, std::back_inserter(to.maps), mapOption);
  } else {
    if (values.size() > 1) throw UsageError(option.name + " is given twice");
    if (values.front().empty()) {
      throw UsageError(option.name + " needs a value that is not empty");
    }
    to.*option.text = values.front();
  }
}

void readArguments(const CLI::App& app, Arguments& arguments) {
  const CLI::App& given = *app.get_subcommands().front();
  const CommandRow& row = commandOf(app);
  const auto valuesOf = [&](const char* word) { return given.get_option(word)->results(); };
  arguments.command = row.command;
  if (takesKind(row.command)) arguments.kind = kindNamed(valuesOf(kindWord)[0], row.command);
  arguments.file = valuesOf(pathWord)[0];
  if (arguments.file.empty()) throw UsageError("the path is empty");
  for (const Option& option : optionRows) {
    std::vector<std::string> values = app.get_option(option.name)->results();
    if (takes(row.command, option)) {
      std::ranges::copy(given.get_option(option.name)->results(), std::back_inserter(values));
    } else if (!values.empty()) {
      throw UsageError(option.name + " means nothing to " + row.name);
    }
    if (!values.empty()) apply(option, values, arguments);
  }
}

}  // namespace

Arguments parseArguments(std::span<const std::string> args) {
  checkEquals(args);
  const auto app = makeApp();
  std::vector<std::string> reversed(args.rbegin(), args.rend());  // as the library wants them
  // "help import" asks for what "--help import" shows.
  if (!args.empty() && args.front() == "help") reversed.back() = "--help";
  Arguments arguments;
  try {
    app->parse(reversed);
    readArguments(*app, arguments);
  } catch (const CLI::CallForHelp&) {
    arguments.answer = app->help();
  } catch (const CLI::CallForVersion& version) {
    arguments.answer = version.what();
  } catch (const CLI::ArgumentMismatch&) {  // nothing follows the last option
    throw UsageError(args.back() + " needs a value");
  } catch (const CLI::ParseError&) {
    throw UsageError(refusal(*app) + "; `opnimp --help` shows how it is used");
  }
  return arguments;
}

bool asksForJson(std::span<const std::string> args) {
  const auto end = std::ranges::find(args, "--");
  return std::find(args.begin(), end, "--json") != end;
}

}  // namespace velk
