// Which columns of a file look like fields that no column is mapped to. Nothing is mapped by it:
// the user is told, with the option that maps them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/opnimp/records/field_mapping.h"

namespace velk {

struct TitleSuggestion {
  std::string field;
  std::size_t column = 0;   ///< of the file, from 0
  std::string title;        ///< of that column
  bool isRepeated = false;  ///< another column has the same title
  std::string reason;       ///< why it looks so, such as "the same words, shortened"
  bool isDoubtful = false;  ///< another column looks like the field, too

  /// The value of --map that maps it, without quotes: Field=Column.
  std::string option() const;
};

/// `titles`: of all columns of the file. In the order of the fields; several for one, or of one
/// column, only where that is doubtful.
std::vector<TitleSuggestion> suggestTitles(const std::vector<FieldMapping>& mapping,
                                           const std::vector<std::string>& titles);

/// Whether each title is the field's own or a usual name for it, or shortens one of several words.
std::vector<bool> usualTitles(const std::string& field, const std::vector<std::string>& titles);

}  // namespace velk
