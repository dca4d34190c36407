#include "apps/opnimp/run/profiles.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "apps/opnimp/cli/command_line.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/cli/profile.h"
#include "apps/opnimp/records/claimed_name.h"
#include "apps/opnimp/records/file_bytes.h"
#include "base/text.h"
#include "platform/native/native_files.h"
#include "platform/native/native_privacy.h"
#include "platform/native/native_state.h"
#include "platform/utf8_path.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view extension = ".ini";

/// A name has no sign that a path has.
bool isName(const std::string& name) {
  return std::ranges::none_of(name, [](char c) { return c == '/' || c == '\\' || c == '.'; });
}

std::string pathOf(const std::string& name, const Surroundings& surroundings) {
  if (!isName(name)) return name;
  if (surroundings.settingsFolder.empty()) {
    throw CannotOpen("there is no folder for profiles: " + std::string(noSettingsFolder) +
                     ". Give the path of a file, such as ./" + name + std::string(extension));
  }
  const fs::path folder = toPath(surroundings.settingsFolder) / "opnimp" / "profiles";
  return (folder / toPath(name + std::string(extension))).string();
}

std::string profileNamed(const std::string& name, const Surroundings& surroundings) {
  const std::string path = pathOf(name, surroundings);
  NativeFileSystem files;
  try {
    return readBytes(files, path);
  } catch (const RuntimeError& error) {
    throw CannotOpen("the profile " + path + " could not be read: " + fileErrorText(path, error) +
                     ". `opnimp preview KIND FILE --save-profile " + name + "` saves one");
  }
}

/// Of "--date-order=dmy": "--date-order".
std::string_view optionOf(std::string_view arg) {
  return arg.substr(0, arg.find('='));
}

/// Both say which line has the titles.
std::string_view groupOf(std::string_view option) {
  return option == "--skip-lines" ? "--header-line" : option;
}

/// True for an option that the command line says otherwise, or that its command does not have.
bool isOverruled(const std::string& option, std::span<const std::string> args,
                 const Arguments& given) {
  const std::string_view name = optionOf(option);
  // Of a conversion nothing is refused for its warnings.
  if (name == "--accept" && given.command == Arguments::Command::Convert) return true;
  if (name == "--map") {
    const std::string_view pair = std::string_view(option).substr(name.size() + 1);
    return std::ranges::any_of(given.maps, [&](const MapOption& map) {
      return equalsIgnoringCase(map.field, optionOf(pair));
    });
  }
  const auto end = std::ranges::find(args, "--");
  return std::any_of(args.begin(), end, [&](const std::string& arg) {
    return groupOf(optionOf(arg)) == groupOf(name);
  });
}

std::vector<std::string> joinedArguments(std::span<const std::string> args, const Arguments& given,
                                         const Profile& profile) {
  std::vector<std::string> all{args.front()};
  for (const std::string& option : profile.options) {
    if (!isOverruled(option, args, given)) all.push_back(option);
  }
  all.insert(all.end(), args.begin() + 1, args.end());
  return all;
}

Arguments applied(std::span<const std::string> args, const Arguments& given,
                  const Profile& profile) {
  if (profile.kind != given.kind->name) {
    throw UsageError("it is for files of the kind " + printable(cutTo(profile.kind, 80)));
  }
  Arguments all = parseArguments(joinedArguments(args, given, profile));
  // Those of the profile stand in front.
  const std::size_t count = all.maps.size() - given.maps.size();
  for (std::size_t i = 0; i < count; ++i) all.maps[i].isOfProfile = true;
  all.words = given.words;
  all.convert.profile = *given.profile;
  for (const std::string& option : profile.options) {
    if (isOverruled(option, args, given)) continue;
    all.convert.profileOptions.emplace_back(optionOf(option));
  }
  return all;
}

/// How the file was read: its columns by their titles, what was given, and what it showed itself
/// that another one may not show.
Profile profileOf(const ImportResult& result) {
  const Arguments& arguments = result.arguments;
  Profile profile{std::string(arguments.kind->name), {}};
  for (const FieldMapping& field : result.mapping) {
    if (!field.column || arguments.kind->format == FileFormat::Workbook) continue;
    if (field.title.empty()) {
      throw UsageError("the column of " + field.field + " has no title");
    }
    profile.options.push_back("--map=" + field.field + "=" + field.title);
  }
  const auto add = [&](std::string option) { profile.options.push_back(std::move(option)); };
  const auto isGiven = [&](std::string_view option) {
    return std::ranges::any_of(arguments.reading,
                               [&](const std::string& given) { return optionOf(given) == option; });
  };
  std::ranges::for_each(arguments.reading, add);
  const Conversion& found = result.input->conversion();
  constexpr std::array<const char*, 3> orders{"dmy", "mdy", "ymd"};
  if (found.dateOrder && !isGiven("--date-order")) {
    add("--date-order=" + std::string(orders[static_cast<std::size_t>(*found.dateOrder)]));
  }
  if (found.decimal && !isGiven("--decimal")) {
    add(std::string("--decimal=") + (*found.decimal == ',' ? "comma" : "point"));
  }
  return profile;
}

void write(const std::string& path, const std::string& text) {
  NativeFileSystem files;
  std::error_code error;  // shows when the file is written
  fs::create_directories(toPath(path).parent_path(), error);
  writing("the profile", path, "--save-profile", [&] {
    asNewFile(files, path, [&] { writeFile(files, path, text); });
    makePrivate(path);
  });
}

}  // namespace

Arguments argumentsWithProfile(std::span<const std::string> args,
                               const Surroundings& surroundings) {
  Arguments given = parseArguments(args);
  if (!given.answer.empty()) return given;
  if (given.savedProfile) requireNoFile(pathOf(*given.savedProfile, surroundings));
  if (!given.profile) return given;
  const std::string text = profileNamed(*given.profile, surroundings);
  try {
    return applied(args, given, readProfile(text));
  } catch (const UsageError& error) {
    throw UsageError("the profile " + *given.profile + ": " + error.what());
  }
}

std::vector<Writes> profileWritten(const Arguments& arguments, const Surroundings& surroundings) {
  const auto& name = arguments.savedProfile;
  if (!name) return {};
  return {{"--save-profile", *name, {pathOf(*name, surroundings)}}};
}

void saveProfile(ImportResult& result, const Surroundings& surroundings, Events& events) {
  const auto& name = result.arguments.savedProfile;
  if (!name) return;
  try {
    if (result.refused()) throw UsageError("the file was refused");
    const std::string path = pathOf(*name, surroundings);
    Profile profile = profileOf(result);
    write(path, profileText(profile));
    events.notice("The profile " + *name + " was saved in " + path + ".");
  } catch (const std::runtime_error& failure) {
    result.profileError = failure.what();
    events.notice("The profile " + *name + " was not saved: " + result.profileError + ".");
  }
}

}  // namespace velk
