#include "apps/opnimp/run/ready_commands.h"

#include <algorithm>

#include "apps/opnimp/run/database_choice.h"
#include "base/text.h"

namespace velk {

namespace {

/// As a shell takes it for one word.
std::string shellWord(std::string_view word) {
  constexpr std::string_view plainSigns = "_-./:=,+@%#";
  const bool isPlain =
      !word.empty() && word.front() != '#' && std::ranges::all_of(word, [&](char c) {
        return isDigit(c) || (lowerAscii(c) >= 'a' && lowerAscii(c) <= 'z') ||
               plainSigns.find(c) != std::string_view::npos;
      });
  if (isPlain) return std::string(word);
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

std::string commandWith(const Arguments& arguments, const std::string& choice) {
  std::string command = "opnimp";
  const auto end = std::ranges::find(arguments.words, "--");
  const auto add = [&](const std::string& word) {
    command += ' ' + shellWord(maskPasswords(word));
  };
  std::for_each(arguments.words.begin(), end, add);
  command += ' ' + choice;
  std::for_each(end, arguments.words.end(), add);
  return command;
}

}  // namespace

std::vector<std::string> readyCommands(const Arguments& arguments,
                                       const std::vector<std::string>& choices) {
  std::vector<std::string> commands;
  commands.reserve(choices.size());
  for (const std::string& choice : choices) commands.push_back(commandWith(arguments, choice));
  return commands;
}

std::vector<std::string> readyCommands(const ImportResult& result) {
  std::vector<std::string> choices;
  if (!result.refused() || result.refusedWithAnother || result.repeats) return choices;
  choices = result.input->conversion().choices;
  const std::vector<TitleSuggestion> suggestions = suggestionsFor(result);
  // Which of two columns is meant is for the user to say.
  if (std::ranges::any_of(suggestions, &TitleSuggestion::isDoubtful)) {
    return readyCommands(result.arguments, choices);
  }
  std::string maps;
  for (const TitleSuggestion& suggestion : suggestions) {
    maps.append(maps.empty() ? "" : " ").append("--map ").append(shellWord(suggestion.option()));
  }
  if (!maps.empty()) choices.push_back(maps);
  return readyCommands(result.arguments, choices);
}

}  // namespace velk
