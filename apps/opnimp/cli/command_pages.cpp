#include "apps/opnimp/cli/command_pages.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

#include "apps/opnimp/cli/kinds.h"

namespace velk {

namespace {

using Words = std::vector<std::string>;

std::string joined(const Words& words) {
  std::string text;
  for (const std::string& word : words) text.append(text.empty() ? "" : " ").append(word);
  return text;
}

/// Those that the help shows.
std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& command, bool positional) {
  return command.get_options(
      [&](const CLI::Option* option) { return option->get_positional() == positional; });
}

bool takesKind(const CLI::App& command) {
  return !command
              .get_options(
                  [](const CLI::Option* option) { return option->get_name(true) == "KIND"; })
              .empty();
}

/// Such as "--json", and "-h" besides "--help".
Words namesOf(const CLI::Option& option) {
  Words names;
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

std::string optionWords(const CLI::App& command) {
  Words words;
  for (const CLI::Option* const option : optionsOf(command, false)) {
    std::ranges::move(namesOf(*option), std::back_inserter(words));
  }
  return joined(words);
}

std::string kindWords() {
  Words words;
  for (const ImportKind& kind : importKinds()) words.emplace_back(kind.name);
  return joined(words);
}

std::string commandWords(const CLI::App& app) {
  Words words;
  for (const CLI::App* const command : commandsOf(app)) words.push_back(command->get_name());
  return joined(words);
}

/// What roff takes for a request or an escape is text.
std::string roff(std::string_view text) {
  std::string escaped;
  bool isStart = true;
  for (const char c : text) {
    if (isStart && (c == '.' || c == '\'')) escaped += "\\&";
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else if (c == '"') {
      escaped += "\\(dq";
    } else {
      escaped += c;
    }
    isStart = c == '\n';
  }
  return escaped;
}

void writeOption(const std::string& name, const std::string& value, const std::string& what,
                 std::string& page) {
  page += ".TP\n.B " + roff(name) + (value.empty() ? "" : " " + roff(value)) + "\n";
  page += roff(what) + "\n";
}

/// `common`: what all commands have at their end.
void writeCommand(const CLI::App& command, const std::string& common, std::string& page) {
  std::string usage;
  for (const CLI::Option* const option : optionsOf(command, true)) {
    usage += " " + option->get_name(true) + option->get_type_name();
  }
  page += ".SS opnimp " + roff(command.get_name() + usage) + "\n";
  page += roff(command.get_description()) + "\n";
  for (const CLI::Option* const option : optionsOf(command, true)) {
    page += ".TP\n.B " + roff(option->get_name(true)) + "\n.nf\n" +
            roff(option->get_description()) + "\n.fi\n";
  }
  for (const CLI::Option* const option : optionsOf(command, false)) {
    writeOption(joined(namesOf(*option)), option->get_type_name(), option->get_description(), page);
  }
  std::string footer = command.get_footer();
  if (footer.ends_with(common)) footer.resize(footer.size() - common.size());
  if (!footer.empty()) page += ".PP\n.nf\n" + roff(footer) + "\n.fi\n";
}

/// One case for each command: what completes its options, and its kinds.
template <class Case>
std::string cases(const CLI::App& app, Case writeCase) {
  std::string text;
  for (const CLI::App* const command : commandsOf(app)) {
    text += "    " + command->get_name() + ")\n";
    text += writeCase(optionWords(*command), takesKind(*command) ? kindWords() : std::string());
    text += "      ;;\n";
  }
  return text;
}

std::string bashScript(const CLI::App& app) {
  const auto reply = [](const std::string& words) {
    return "COMPREPLY=($(compgen -W '" + words + R"(' -- "$word")); return;)";
  };
  return "_opnimp() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]}\n"
         "  if ((COMP_CWORD == 1)); then " +
         reply(commandWords(app) + " help") + " fi\n  case ${COMP_WORDS[1]} in\n" +
         cases(app,
               [&](const std::string& options, const std::string& kinds) {
                 std::string text = "      if [[ $word == -* ]]; then " + reply(options) + " fi\n";
                 if (kinds.empty()) return text;
                 return text + "      if ((COMP_CWORD == 2)); then " + reply(kinds) + " fi\n";
               }) +
         "  esac\n"
         "  COMPREPLY=($(compgen -f -- \"$word\"))\n"
         "}\n"
         "complete -o filenames -F _opnimp opnimp\n";
}

std::string zshScript(const CLI::App& app) {
  const auto add = [](const std::string& words) { return "compadd -- " + words + "; return;"; };
  return "#compdef opnimp\n"
         "_opnimp() {\n"
         "  if ((CURRENT == 2)); then " +
         add(commandWords(app) + " help") + " fi\n  case $words[2] in\n" +
         cases(app,
               [&](const std::string& options, const std::string& kinds) {
                 std::string text = "      if [[ $PREFIX == -* ]]; then " + add(options) + " fi\n";
                 if (kinds.empty()) return text;
                 return text + "      if ((CURRENT == 3)); then " + add(kinds) + " fi\n";
               }) +
         "  esac\n"
         "  _files\n"
         "}\n"
         "compdef _opnimp opnimp\n";
}

/// A text in fish's single quotes; of several lines the first one.
std::string fishText(std::string text) {
  text = text.substr(0, text.find('\n'));
  std::string quoted = "'";
  for (const char c : text) quoted.append(c == '\'' || c == '\\' ? "\\" : "") += c;
  return quoted + "'";
}

std::string fishScript(const CLI::App& app) {
  std::string text;
  for (const CLI::App* const command : commandsOf(app)) {
    text += "complete -c opnimp -n __fish_use_subcommand -a " + command->get_name() + " -d " +
            fishText(command->get_description()) + "\n";
    const std::string within =
        "complete -c opnimp -n '__fish_seen_subcommand_from " + command->get_name() + "'";
    if (takesKind(*command)) text += within + " -a '" + kindWords() + "'\n";
    for (const CLI::Option* const option : optionsOf(*command, false)) {
      text += within;
      for (const std::string& name : option->get_snames()) text += " -s " + name;
      for (const std::string& name : option->get_lnames()) text += " -l " + name;
      text += (option->get_items_expected() > 0 ? " -r -d " : " -d ") +
              fishText(option->get_description()) + "\n";
    }
  }
  return text;
}

}  // namespace

std::string manualPage(const CLI::App& app, std::string_view version) {
  std::string page = R"(.TH OPNIMP 1 "" "opnimp )" + std::string(version) + "\"\n";
  page += ".SH NAME\nopnimp \\- imports opening data from files\n";
  page += ".SH SYNOPSIS\n.B opnimp\nCOMMAND ...\n";
  page += ".SH DESCRIPTION\n" + roff(app.get_description()) + "\n.SH COMMANDS\n";
  for (const CLI::App* const command : commandsOf(app)) {
    writeCommand(*command, app.get_footer(), page);
  }
  page += ".SH EXIT STATUS\n.nf\n" + roff(app.get_footer()) + "\n.fi\n";
  return page;
}

std::string completionScript(const CLI::App& app, std::string_view shell) {
  if (shell == "fish") return fishScript(app);
  return shell == "zsh" ? zshScript(app) : bashScript(app);
}

}  // namespace velk
