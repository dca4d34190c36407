// How a file is to be read that is not in the format of the screens: what the user says of it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_reader.h"

namespace velk {

/// What is left empty is found in the file.
struct ConvertOptions {
  std::string encoding;                  ///< its name
  std::string sheet;                     ///< of a workbook, by its name or as #N for the Nth
  std::optional<char> delimiter;         ///< what separates values
  std::optional<std::size_t> lastLines;  ///< that are no records, even if they look like it
  std::size_t headerLine = 0;            ///< that holds the titles, from 1; 0: it is found
  std::optional<DateOrder> dateOrder;
  std::optional<char> decimal;              ///< the sign in front of decimals, '.' or ','
  bool replace = false;                     ///< "?" takes the place of what windows-1252 lacks
  bool raw = false;                         ///< the bytes are handed over as they are
  std::string profile;                      ///< the name of the one that some options are from
  std::vector<std::string> profileOptions;  ///< these, such as "--decimal"

  /// Where an option comes from, as an assumption's reason; perhaps from the other one.
  std::string origin(std::string_view option, std::string_view other = {}) const;
};

}  // namespace velk
