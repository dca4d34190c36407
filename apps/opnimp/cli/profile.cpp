#include "apps/opnimp/cli/profile.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <sstream>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "base/text.h"

namespace velk {

namespace {

constexpr std::string_view kindKey = "kind";
constexpr std::string_view replaceKey = "replace";

struct Key {
  std::string_view name;
  std::string_view comment;
  bool mayRepeat = false;
};
// In the order in which they are written; behind the first one they are options. Not how many last
// lines are no records: the next file may end in one.
constexpr std::array<Key, 11> keys{
    {{kindKey, "The kind of file."},
     {"map", "Each field, and the title of its column in the file.", true},
     {"encoding", "The encoding; without it, what each file shows."},
     {"sheet", "The sheet of a workbook, by its name or as #N."},
     {"delimiter", "What separates values: comma, semicolon, tab or bar."},
     {"skip-lines", "How many lines stand above the titles."},
     {"header-line", "The line that the titles stand in."},
     {"date-order", "How dates are written that read both ways: dmy, mdy or ymd."},
     {"decimal", "What stands in front of decimals: point or comma."},
     {replaceKey, "\"?\" takes the place of letters that windows-1252 does not have."},
     {"accept", "Harmful warnings that are accepted.", true}}};

const Key* keyNamed(std::string_view name) {
  const auto* const found = std::ranges::find(keys, name, &Key::name);
  return found == keys.end() ? nullptr : &*found;
}

bool isControl(char c) {
  return static_cast<unsigned char>(c) < ' ';
}

/// Larger ones, and such as no editor writes, are something else.
void requireText(const std::string& text) {
  constexpr std::size_t largest = std::size_t{1} << 16;
  if (text.size() > largest) throw UsageError("it is larger than 64 KB");
  const auto isStray = [](char c) { return isControl(c) && c != '\n' && c != '\r' && c != '\t'; };
  if (std::ranges::any_of(text, isStray) || findInvalidUtf8(text) != std::string::npos) {
    throw UsageError("it is no text in UTF-8");
  }
}

/// Nothing but the quotes around a value means anything in it.
std::vector<CLI::ConfigItem> itemsOf(const std::string& text) {
  constexpr char nothing = '\x01';
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  CLI::ConfigBase format;
  format.comment(nothing)->arrayBounds(nothing, nothing)->arrayDelimiter(nothing);
  std::istringstream lines(text.substr(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0));
  return format.from_config(lines);
}

void add(const Key& key, const std::string& value, Profile& profile) {
  if (key.name == kindKey) {
    profile.kind = value;
  } else if (key.name != replaceKey) {
    profile.options.push_back("--" + std::string(key.name) + "=" + value);
  } else if (value == "true") {
    profile.options.push_back("--" + std::string(key.name));
  } else {
    throw UsageError("replace is true, or is left out");
  }
}

std::string listOfKeys() {
  std::vector<std::string> names;
  names.reserve(keys.size());
  for (const Key& key : keys) names.emplace_back(key.name);
  return listed(names);
}

void writeKey(std::string_view key, std::string_view value, std::string& text) {
  if (std::ranges::any_of(value, isControl)) {
    throw UsageError("\"" + printable(value) + "\" does not fit into a line");
  }
  text.append(key).append(" = \"").append(value).append("\"\n");
}

}  // namespace

bool isProfileOption(std::string_view name) {
  return name != kindKey && keyNamed(name) != nullptr;
}

Profile readProfile(const std::string& text) {
  requireText(text);
  Profile profile;
  std::vector<std::string> seen;
  for (const CLI::ConfigItem& item : itemsOf(text)) {
    const std::string name = item.fullname();
    const Key* const key = keyNamed(name);
    if (key == nullptr) {
      throw UsageError("it has \"" + printable(cutTo(name, 80)) +
                       "\", which no profile has; there is: " + listOfKeys());
    }
    const bool isAgain = item.inputs.size() > 1 || std::ranges::find(seen, name) != seen.end();
    if (isAgain && !key->mayRepeat) throw UsageError("it has " + name + " more than once");
    seen.push_back(name);
    for (const std::string& value : item.inputs) {
      if (value.empty()) throw UsageError(name + " has no value");
      add(*key, value, profile);
    }
  }
  if (profile.kind.empty()) throw UsageError("it does not say which kind of file it is for");
  return profile;
}

std::string profileText(const Profile& profile) {
  std::string text =
      "# How files of one source are read: opnimp import KIND FILE --profile NAME\n"
      "# Options of the command line come first. Lines that begin with # are comments.\n";
  for (const Key& key : keys) {
    std::string lines;
    if (key.name == kindKey) writeKey(key.name, profile.kind, lines);
    const std::string option = "--" + std::string(key.name);
    for (const std::string& given : profile.options) {
      if (given == option) writeKey(key.name, "true", lines);
      if (given.starts_with(option + "="))
        writeKey(key.name, given.substr(option.size() + 1), lines);
    }
    if (!lines.empty()) text.append("\n# ").append(key.comment).append("\n").append(lines);
  }
  return text;
}

}  // namespace velk
