#include "apps/opnimp/run/ready_commands.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "apps/opnimp/run/database_choice.h"
#include "platform/native/native_shell.h"

namespace velk {

namespace {

std::optional<std::string> commandWith(const Arguments& arguments, const std::string& choice) {
  std::string command = "opnimp";
  bool isSafe = true;
  const auto end = std::ranges::find(arguments.words, "--");
  const auto add = [&](const std::string& word) {
    const std::optional<std::string> typed = shellWord(maskPasswords(word));
    isSafe = isSafe && typed;
    command += ' ' + typed.value_or("");
  };
  std::for_each(arguments.words.begin(), end, add);
  command += ' ' + choice;
  std::for_each(end, arguments.words.end(), add);
  return isSafe ? std::optional(command) : std::nullopt;
}

}  // namespace

std::vector<std::string> readyCommands(const Arguments& arguments,
                                       const std::vector<std::string>& choices) {
  std::vector<std::string> commands;
  for (const std::string& choice : choices) {
    if (auto command = commandWith(arguments, choice)) commands.push_back(std::move(*command));
  }
  return commands;
}

std::string mapChoice(const std::vector<TitleSuggestion>& suggestions) {
  // Which of two columns is meant is for the user to say.
  if (std::ranges::any_of(suggestions, &TitleSuggestion::isDoubtful)) return {};
  std::string maps;
  for (const TitleSuggestion& suggestion : suggestions) {
    const std::optional<std::string> option = shellWord(suggestion.option());
    if (!option) return {};
    maps.append(maps.empty() ? "" : " ").append("--map ").append(*option);
  }
  return maps;
}

std::vector<std::string> readyCommands(const ImportResult& result) {
  std::vector<std::string> choices;
  if (!result.refused() || result.refusedWithAnother || result.repeats) return choices;
  choices = result.input->conversion().choices;
  if (const std::string maps = mapChoice(suggestionsFor(result)); !maps.empty()) {
    choices.push_back(maps);
  }
  return readyCommands(result.arguments, choices);
}

}  // namespace velk
