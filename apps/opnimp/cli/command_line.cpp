#include "apps/opnimp/cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <map>

#include "apps/opnimp/cli/argument_values.h"
#include "apps/opnimp/cli/command_pages.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/help_texts.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/cli/profile.h"
#include "apps/opnimp/cli/program_version.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

constexpr std::string_view logFormatOption = "--log-format";

constexpr std::size_t maxTextLines = std::size_t{1} << 31;

using Command = Arguments::Command;

// "auto" is what is not given.
const std::map<std::string, std::optional<char>> delimiterNames{
    {"auto", std::nullopt}, {"comma", ','}, {"semicolon", ';'}, {"tab", '\t'}, {"bar", '|'}};
const std::map<std::string, std::optional<char>> decimalNames{
    {"auto", std::nullopt}, {"point", '.'}, {"comma", ','}};
const std::map<std::string, std::optional<DateOrder>> dateOrderNames{
    {"auto", std::nullopt},
    {"dmy", DateOrder::DayMonthYear},
    {"mdy", DateOrder::MonthDayYear},
    {"ymd", DateOrder::YearMonthDay}};

class CommandLine {
 public:
  CommandLine() {
    CLI::Formatter& form = dynamic_cast<CLI::Formatter&>(*app_.get_formatter());
    form.column_width(28);
    form.label("REQUIRED", "");
    form.label("Positionals", "Arguments");
    form.label("SUBCOMMAND", "COMMAND");
    app_.set_help_flag("-h,--help", "show how the program or a command is used");
    app_.allow_windows_style_options(false);  // a path may begin with a slash there, too
    app_.set_version_flag("--version", "version", "show version, commit and known engines");
    app_.footer(mainFooter)->require_subcommand(1);
    addCommands();
  }

  const Arguments& parse(std::vector<std::string> args) {
    // "help import" asks for what "--help import" shows.
    if (!args.empty() && args.front() == "help") args.front() = "--help";
    std::ranges::reverse(args);  // as the library wants them
    // Help and version are thrown, too, and derive from ParseError: their handlers come first.
    try {
      app_.parse(std::move(args));
      noteReading();
    } catch (const CLI::CallForHelp&) {
      arguments_.answer = app_.help();
    } catch (const CLI::CallForVersion&) {
      arguments_.command = Command::Version;
    } catch (const CLI::ParseError& error) {
      throw UsageError(whatIsWrong(error) + "; `opnimp --help` shows how it is used");
    }
    return arguments_;
  }

 private:
  using Apps = std::initializer_list<CLI::App*>;

  /// An option that there is not is named before what is missing: it may have been meant for that.
  std::string whatIsWrong(const CLI::ParseError& error) const {
    const std::vector<std::string> rest = app_.remaining(true);
    for (const std::string& argument : rest) {
      if (argument.starts_with('-')) {
        return "The following argument was not expected: " + argument;
      }
    }
    if (!app_.get_subcommands().empty()) return error.what();
    return rest.empty() ? "a command is needed" : "there is no command \"" + rest.front() + "\"";
  }

  void noteReading() {
    for (const CLI::App* const command : std::as_const(app_).get_subcommands()) {
      for (const CLI::Option* const option : command->get_options()) {
        if (option->count() == 0 || option->get_lnames().empty()) continue;
        const std::string& name = option->get_lnames().front();
        if (name == "map" || !isProfileOption(name)) continue;
        for (const std::string& value : option->results()) {
          arguments_.reading.push_back("--" + name +
                                       (option->get_items_expected() == 0 ? "" : "=" + value));
        }
      }
    }
  }

  void addCommands() {
    const auto import =
        addOfKind(Command::Import, "import", "post the file's records to the database");
    const auto preview = addOfKind(Command::Preview, "preview",
                                   "show the columns, what maps to what, and the first rows;\n"
                                   "needs no database");
    addFiles(*import, filesHelp + numberedHelp);
    addFiles(*preview, filesHelp);
    preview->footer(previewFooter);
    addConvert();
    const auto exporting = addOfKind(Command::Export, "export", exportHelp);
    addFile(*exporting, "the workbook to write");
    addFile(
        *add(Command::DemoDatabase, "demo-database", "make the sample company's embedded database"),
        "the new file");
    CLI::App* const kinds = addFileCommands();
    addText(*add(Command::LockHolders, lockHoldersCommand.data(), "")->group(""), "SESSION", "",
            arguments_.session, "")
        ->required();
    const auto checking = addCheck();
    addRecordOptions(import, preview, exporting, checking);
    const auto [runs, report] = addJournalCommands(import);
    addFlag({import, preview, exporting, checking, runs, report, kinds}, "--json", arguments_.json,
            jsonHelp);
    addLogFormat({import, preview, exporting, checking});
    addFlag({import, preview, exporting, app_.get_subcommand("convert")}, "-q,--quiet",
            arguments_.quiet, quietHelp);
    addFlag({import}, "-v,--verbose", arguments_.verbose, verboseHelp);
    import->get_option("--verbose")->excludes("--quiet");
    addPages();
    for (const Example& example : examples) {
      CLI::App* const command = app_.get_subcommand(example.command);
      command->footer(std::string("Examples:\n") + example.lines + "\n" + command->get_footer());
    }
  }

  /// What describes the program to others is made of this very definition.
  void addPages() {
    app_.add_subcommand("man", "print the manual page, for man(1)")
        ->group("Commands")
        ->callback([this] { arguments_.answer = manualPage(app_, programVersion); });
    CLI::App* const completion =
        app_.add_subcommand("completion", "print a script by which a shell completes what is typed")
            ->group("Commands");
    const auto take = [this](const std::string& shell) {
      arguments_.answer = completionScript(app_, shell);
    };
    completion->add_option_function<std::string>("SHELL", take, "bash, zsh or fish")
        ->required()
        ->type_name("")
        ->check(CLI::Validator(CLI::IsMember({"bash", "zsh", "fish"})).description(""));
  }

  void addConvert() {
    CLI::App* const command =
        addOfKind(Command::Convert, "convert",
                  "write a file of another program as the screens read it: in\n"
                  "windows-1252, with commas, dates that read in one way and\n"
                  "amounts with a point, salesmen as an .xls workbook; needs no\n"
                  "database");
    const auto takeFile = [this](const std::string& file) { arguments_.files = {file}; };
    command
        ->add_option_function<std::string>("IN", takeFile,
                                           "the file of the other program; - is standard input")
        ->required()
        ->type_name("");
    addText(*command, "OUT", "", arguments_.file,
            "the new file; - is standard output, and the report then goes\n"
            "to standard error")
        ->required();
    addConvertOptions({command});
    addMap({command});
    addText({command}, "--profile", "NAME", arguments_.profile, profileHelp);
    addFlag({command}, "--json", arguments_.json, jsonHelp);
  }

  void addConvertOptions(Apps commands) {
    ConvertOptions& options = arguments_.convert;
    for (CLI::App* const command : commands) {
      const auto takeEncoding = [&options](const std::string& name) {
        options.encoding = lowerAscii(name) == "auto" ? "" : name;
      };
      command->add_option_function<std::string>("--encoding", takeEncoding, encodingHelp)
          ->type_name("NAME")
          ->check(notEmpty());
      addText(*command, "--sheet", "NAME", options.sheet, sheetHelp);
      addChoice(*command, "--delimiter", "SIGN", options.delimiter, delimiterNames, delimiterHelp);
      CLI::Option* const skip = addLine(*command, "--skip-lines", skipHelp, 1);
      addLine(*command, "--header-line", headerHelp, 0)->excludes(skip);
      addText(*command, "--skip-last-lines", "N", options.lastLines, lastLinesHelp)
          ->check(CLI::Range(std::size_t{0}, maxTextLines).description(""));
      addChoice(*command, "--date-order", "ORDER", options.dateOrder, dateOrderNames,
                dateOrderHelp);
      addChoice(*command, "--decimal", "SIGN", options.decimal, decimalNames, decimalHelp);
    }
    addFlag(commands, "--replace", options.replace, replaceHelp);
  }

  template <class Choice>
  static void addChoice(CLI::App& command, const char* name, const char* value,
                        std::optional<Choice>& to,
                        const std::map<std::string, std::optional<Choice>>& names,
                        const std::string& what) {
    const auto take = [&to, &names](const std::string& text) { to = names.at(text); };
    command.add_option_function<std::string>(name, take, what)
        ->type_name(value)
        ->check(CLI::Validator(CLI::IsMember(&names)).description(""));
  }

  /// `behind`: what to add to the number of the line.
  CLI::Option* addLine(CLI::App& command, const std::string& name, const std::string& what,
                       std::size_t behind) {
    const auto take = [this, name, behind](const std::string& text) {
      const auto line = exactNumber<std::size_t>(text);
      // The sum must be a number, too.
      if (!line || *line == 0 || *line > maxTextLines) {
        throw UsageError(name + " takes a number from 1, not \"" + text + "\"");
      }
      arguments_.convert.headerLine = *line + behind;
    };
    return command.add_option_function<std::string>(name, take, what)->type_name("N");
  }

  CLI::App* addCheck() {
    CLI::App* const command =
        addOfKinds(Command::CheckDatabase, "check-database",
                   "say whether imports can work in the database: what is there of\n"
                   "that each needs, and what rights the user has too many");
    command->footer(checkFooter);
    return command;
  }

  /// Answers the one that can write JSON.
  CLI::App* addFileCommands() {
    CLI::App* const kinds =
        addOfKinds(Command::Kinds, "kinds",
                   "tell the columns of the files of each kind, and what they may be");
    addFile(*addOfKind(Command::Template, "template",
                       "write a file with the columns of a kind, and an example"),
            "the new file, .csv or .xls; a workbook has what each column may\n"
            "be on its second sheet");
    CLI::App* const split =
        add(Command::Split, "split", "write files of as many records as a screen takes");
    addFile(*split, "the file with the records; FILE.1.csv, FILE.2.csv and so on are\nwritten");
    split
        ->add_option("--records", arguments_.recordsInFile,
                     "at most in each of them (default: 32766)")
        ->type_name("N")
        ->check(CLI::Range(std::size_t{1}, masterLargestCount).description(""));
    return kinds;
  }

  void addRecordOptions(CLI::App* import, CLI::App* preview, CLI::App* exporting,
                        CLI::App* checking) {
    // Without allow_extra_args(false), one would take all the arguments that follow it.
    for (CLI::App* const command : {import, exporting, checking}) {
      addText(*command, "--database", "STRING", arguments_.databases, databaseHelp)
          ->allow_extra_args(false);
    }
    addText(*preview, "--database", "STRING", arguments_.databases,
            "whose procedures are asked how long texts may be; else none is")
        ->allow_extra_args(false);
    addWait({import, preview, exporting, checking});
    addMap({import, preview});
    addAccept({import, preview});
    addText({import, preview}, "--profile", "NAME", arguments_.profile, profileHelp);
    addText({import, preview}, "--save-profile", "NAME", arguments_.savedProfile, saveProfileHelp);
    addFromLine({import, preview});
    addConvertOptions({import, preview});
    addFlag({import, preview}, "--raw", arguments_.convert.raw, rawHelp);
    addFlag({import}, "--dry-run", arguments_.dryRun, "every check runs, nothing is posted");
    addFlag({import}, "--all-or-nothing", arguments_.allOrNothing, wholeHelp);
    addFlag({import}, "--one-by-one", arguments_.oneByOne, oneByOneHelp);
    addText({import}, "--rejects", "FILE", arguments_.rejects, rejectsHelp);
    addText({import}, "--report", "FILE.html", arguments_.report, reportHelp);
    addText({import}, "--metrics", "FILE", arguments_.metrics, metricsHelp);
    addText({import, exporting}, "--app-folder", "DIR", arguments_.appFolder,
            "where Error.log is written (default: the current folder)");
  }

  /// Answers those that can write JSON.
  std::array<CLI::App*, 2> addJournalCommands(CLI::App* import) {
    const auto runs = add(Command::Runs, "runs", "list the runs of the journal");
    const auto report = addOfRun(Command::Report, "report", "show the report of a run");
    addText({report}, "--html", "FILE.html", arguments_.report, reportHelp);
    const auto reversal = addOfRun(Command::Reversal, "reversal",
                                   "write the opposite documents of what a run posted of opening\n"
                                   "balances, to be imported like any other file");
    addFile(*reversal, "the new file");
    const auto rejects = addOfRun(Command::Rejects, "rejects",
                                  "write the records that a run refused, as --rejects does");
    addFile(*rejects, "the new file; see --rejects of import");
    addText({import, runs, report, reversal, rejects}, "--journal", "PATH", arguments_.journal,
            journalHelp);
    addFlag({import}, "--again", arguments_.again, againHelp);
    addFlag({import}, "--resume", arguments_.resume, resumeHelp);
    // A run that is resumed goes on where it broke off.
    import->get_option("--resume")->excludes("--from-line");
    return {runs, report};
  }

  CLI::App* add(Command id, const char* name, const std::string& what) {
    CLI::App* const command = app_.add_subcommand(name, what)->group("Commands");
    command->callback([this, id] { arguments_.command = id; });
    return command;
  }

  void addFile(CLI::App& command, const char* what) {
    addText(command, "FILE", "", arguments_.file, what)->required();
  }

  void addFiles(CLI::App& command, const std::string& what) {
    addText(command, "FILE", "...", arguments_.files, what)->required();
  }

  CLI::App* addOfKind(Command id, const char* name, const std::string& what) {
    CLI::App* const command = add(id, name, what);
    const auto takeKind = [this, id](const std::string& kind) {
      arguments_.kind = kindNamed(kind, id);
    };
    command->add_option_function<std::string>("KIND", takeKind, kindsOf(id, true))
        ->required()
        ->type_name("");
    return command;
  }

  CLI::App* addOfKinds(Command id, const char* name, const std::string& what) {
    CLI::App* const command = add(id, name, what);
    const auto take = [this, id](const std::vector<std::string>& names) {
      for (const std::string& kind : names) arguments_.kinds.push_back(kindNamed(kind, id));
    };
    command
        ->add_option_function<std::vector<std::string>>(
            "KIND", take, "all if none is given; " + kindsOf(id, false))
        ->type_name("...");
    return command;
  }

  CLI::App* addOfRun(Command id, const char* name, const std::string& what) {
    CLI::App* const command = add(id, name, what);
    const auto takeRun = [this](const std::string& text) { arguments_.run = runNumber(text); };
    command->add_option_function<std::string>("RUN", takeRun, "its number, see `opnimp runs`")
        ->required()
        ->type_name("");
    return command;
  }

  static CLI::Validator notEmpty() {
    return {[](const std::string& text) { return text.empty() ? "it must not be empty" : ""; }, ""};
  }

  template <class Text>
  static CLI::Option* addText(CLI::App& command, const char* name, const char* value, Text& to,
                              const std::string& what) {
    return command.add_option(name, to, what)->type_name(value)->check(notEmpty());
  }

  static void addText(Apps commands, const char* name, const char* value,
                      std::optional<std::string>& to, const std::string& what) {
    for (CLI::App* const command : commands) addText(*command, name, value, to, what);
  }

  static void addFlag(Apps commands, const char* name, bool& to, const std::string& what) {
    for (CLI::App* const command : commands) {
      // Otherwise the library would take "--dry-run=false", and post.
      command->add_flag(name, to, what)->disable_flag_override();
    }
  }

  void addFromLine(Apps commands) {
    const auto take = [this](const std::string& text) {
      const auto line = exactNumber<std::size_t>(text);
      if (!line || *line == 0) {
        throw UsageError("--from-line takes the number of a line, from 1, not \"" + text + "\"");
      }
      arguments_.fromLine = *line;
    };
    for (CLI::App* const command : commands) {
      command->add_option_function<std::string>("--from-line", take, fromLineHelp)->type_name("N");
    }
  }

  void addWait(Apps commands) {
    constexpr int day = 24 * 60 * 60;
    struct Wait {
      const char* name;
      std::optional<int>& seconds;
      int longest;
      const char* what;
    };
    const Wait waits[] = {{"--wait", arguments_.waitSeconds, day,
                           "how long one statement may run, or wait for a lock, before\n"
                           "the run ends, from 1 to 86400 (default: 30)"},
                          {"--lock-wait", arguments_.lockWaitSeconds, day,
                           "how much of that it may wait for a lock, from 1 to 86400\n"
                           "(default: all of it)"},
                          {"--connect-wait", arguments_.connectWaitSeconds, 600,
                           "how long the database may take to open, from 1 to 600\n"
                           "(default: 8)"}};
    for (CLI::App* const command : commands) {
      for (const Wait& wait : waits) {
        command->add_option(wait.name, wait.seconds, wait.what)
            ->type_name("SECONDS")
            ->check(CLI::Range(1, wait.longest).description(""));
      }
    }
  }

  void addLogFormat(Apps commands) {
    const auto take = [this](const std::string& format) { arguments_.jsonLog = format == "json"; };
    for (CLI::App* const command : commands) {
      command->add_option_function<std::string>(std::string(logFormatOption), take, logFormatHelp)
          ->type_name("FORMAT")
          ->check(CLI::Validator(CLI::IsMember({"text", "json"})).description(""));
    }
  }

  void addMap(Apps commands) {
    const auto take = [this](const std::vector<std::string>& values) {
      std::ranges::transform(values, std::back_inserter(arguments_.maps), mapOption);
    };
    for (CLI::App* const command : commands) {
      // Without allow_extra_args(false), one --map would take all the arguments that follow it.
      command->add_option_function<std::vector<std::string>>("--map", take, mapHelp)
          ->allow_extra_args(false)
          ->type_name("\"Field=Column\"");
    }
  }

  void addAccept(Apps commands) {
    for (CLI::App* const command : commands) {
      command->add_option("--accept", arguments_.accept, acceptHelp)
          ->allow_extra_args(false)
          ->delimiter(',')
          ->type_name("CODE,...");
    }
  }

  CLI::App app_{
      "opnimp imports opening data from files, and exports salesmen to be edited and imported "
      "again.\n",
      "opnimp"};
  Arguments arguments_;
};

}  // namespace

Arguments parseArguments(std::span<const std::string> args) {
  checkValues(args);
  Arguments arguments = CommandLine().parse({args.begin(), args.end()});
  checkSeveral(arguments);
  checkMaps(arguments);
  checkReading(arguments);
  checkOutputs(arguments);
  arguments.words.assign(args.begin(), args.end());
  return arguments;
}

// By hand, because it must be known even if the arguments cannot be parsed.
bool asksForJson(std::span<const std::string> args) {
  const auto end = std::ranges::find(args, "--");
  return std::find(args.begin(), end, "--json") != end;
}

bool asksForJsonLog(std::span<const std::string> args) {
  const auto end = std::ranges::find(args, "--");
  const std::string option(logFormatOption);
  const auto split = std::find(args.begin(), end, option);
  return std::find(args.begin(), end, option + "=json") != end ||
         (end - split > 1 && split[1] == "json");
}

}  // namespace velk
