// What people and other programs call the fields of an import.
#pragma once

#include <span>
#include <string_view>

namespace velk {

struct Synonyms {
  std::string_view fields;    ///< titles of the fields meant, separated by commas
  std::string_view language;  ///< in English
  std::string_view names;     ///< separated by commas
};

std::span<const Synonyms> synonyms();

}  // namespace velk
