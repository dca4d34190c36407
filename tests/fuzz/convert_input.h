// What the first two bytes of a fuzz input say of a file to be converted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "apps/opnimp/cli/arguments.h"

namespace velk {

inline void require(bool condition) {
  if (!condition) std::abort();
}

struct ConvertInput {
  Arguments arguments;
  std::string_view bytes;
};

/// `size` is 2 at least.
inline ConvertInput convertInput(const std::uint8_t* data, std::size_t size) {
  ConvertInput input;
  constexpr std::size_t kinds = 4;  // the last one, salesmen, has workbooks
  input.arguments.kind = &importKinds()[data[0] % kinds];
  ConvertOptions& options = input.arguments.convert;
  constexpr std::string_view encodings[] = {
      "", "UTF-8", "UTF-16", "windows-1252", "ISO-8859-15", "windows-1251", "IBM850", "Shift_JIS"};
  options.encoding = encodings[data[0] / kinds % std::size(encodings)];
  options.replace = (data[0] & 0x80U) != 0;
  const unsigned choice = data[1];
  constexpr std::optional<char> delimiters[] = {std::nullopt, ';', ',', '\t'};
  options.delimiter = delimiters[choice & 3U];
  constexpr std::optional<DateOrder> orders[] = {std::nullopt, DateOrder::DayMonthYear,
                                                 DateOrder::MonthDayYear, DateOrder::YearMonthDay};
  options.dateOrder = orders[choice >> 2U & 3U];
  constexpr std::optional<char> decimals[] = {std::nullopt, std::nullopt, '.', ','};
  options.decimal = decimals[choice >> 4U & 3U];
  options.headerLine = choice >> 6U;
  input.bytes = {reinterpret_cast<const char*>(data) + 2, size - 2};
  return input;
}

}  // namespace velk
