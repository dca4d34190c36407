// What differs between the screens that map file columns to fields.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

namespace velk {

/// One field that an import needs: a column of the mapping list.
struct TargetField {
  std::string_view title;
  int width = 0;  ///< twips
  /// The lower-case name that maps a file column to the field without a click; empty: never.
  std::string_view automaticName;
  /// A file column with an empty value can't be mapped to it by hand.
  bool needsValues = false;
  /// A file column without a value in the first record is not mapped to it by its name.
  bool needsFirstValue = false;
};

/// When the first cell of the mapping row shows the "Not Yet" caption. The further cells always
/// show it until their field is mapped.
struct FirstCell {
  bool afterBrowse = false;
  bool afterAutomaticMapping = false;
};

struct MappingRules {
  std::string_view selectFirst;    ///< refusal: no file column was clicked before the field
  std::string_view hasEmptyValue;  ///< refusal: the field needs values and the column lacks one
  bool translatesTitles = false;   ///< a file column's name is the host's caption for its title
  FirstCell firstCell;
  /// Follows the "Not Yet" caption in every cell of the mapping row but the first.
  std::string_view furtherCellSuffix;
  /// Record counts are counted in 32 bits and stored in this range; beyond it they overflow.
  std::int32_t largestRecordCount = std::numeric_limits<std::int32_t>::max();
  /// The count is that of the file's lines that are not empty, without one for the titles, also
  /// when the titles' own line is empty; else that of the rows.
  bool countsLines = false;
  /// Who imports a file again posts its records twice.
  bool repeatsPosting = false;
};

}  // namespace velk
