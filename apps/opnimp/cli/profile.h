// A profile: how files of one source are read, kept for the next one. It is text of lines such as
// `date-order = "dmy"`, whose keys are options of the command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velk {

struct Profile {
  std::string kind;
  std::vector<std::string> options;  ///< such as "--date-order=dmy"
};

/// The options that a profile may have.
bool isProfileOption(std::string_view name);

/// Raises UsageError, which says what is wrong with the text; options have their names checked, and
/// not their values.
Profile readProfile(const std::string& text);

/// The text that reads as the profile, with a comment on each key. Raises UsageError for a title
/// with a line break.
std::string profileText(const Profile& profile);

}  // namespace velk
