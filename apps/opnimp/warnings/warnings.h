// What the owner of a file would want to know before it is imported. A warning is harmful when
// what would be posted is not what is written, and else a note.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/warnings/warning_texts.h"

namespace velk {

/// One value, or record, that is read otherwise than it is written.
struct Misreading {
  std::size_t record = 0;  ///< by its position, from 0
  std::size_t line = 0;    ///< or row of a sheet
  std::string field;       ///< its title; empty: the record as a whole
  std::string text;        ///< as it is written
  std::string readAs;      ///< what the import makes of it, such as "50000"
  bool skips = false;  ///< its bill reads as 0, so that the record is skipped if it comes to that

  /// What comes of it.
  std::string effect() const { return skips ? readAs + ", and the record is skipped" : readAs; }
};

struct Warning {
  WarningId id;
  std::size_t count = 0;             ///< of lines, or rows, in which it was found
  std::size_t lastLine = 0;          ///< of them
  std::vector<std::size_t> lines;    ///< the first of them; empty: it is of the whole file
  std::vector<std::string> fields;   ///< titles of what it was found in, each once; may be empty
  std::vector<Misreading> readings;  ///< all findings of a harmful one

  std::string_view code() const { return warningText(id).code; }
  std::string_view text() const { return warningText(id).text; }
  bool harmful() const { return warningText(id).harmful; }
};

inline constexpr std::size_t mostWarningLines = 5;
inline constexpr std::size_t wholeFile = 0;  ///< in place of a line

/// Notes a finding, which come in the order of lines; `line` is wholeFile if it has none. `field`
/// is a title, or empty.
void addWarning(std::vector<Warning>& warnings, WarningId id, std::size_t line,
                const std::string& field = {});
/// The same of a harmful warning.
void addWarning(std::vector<Warning>& warnings, WarningId id, Misreading reading);

/// Codes of the harmful ones that are not accepted; `accepted` holds codes, or "all".
std::vector<std::string_view> notAccepted(std::span<const Warning> warnings,
                                          std::span<const std::string> accepted);

/// Raises UsageError for a code that no harmful warning has.
void checkAccepted(std::span<const std::string> accepted);

/// Such as: Bill Amount "500,00" is read as 50000.
std::string sentenceOf(const Misreading& reading);

}  // namespace velk
