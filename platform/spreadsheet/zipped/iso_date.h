// Dates as documents of workbooks write them.
#pragma once

#include <optional>
#include <string_view>

namespace velk {

/// "2008-03-31", with or without "T14:30:00" behind it, as base/dates.h counts; fractions of
/// seconds are dropped.
std::optional<double> isoDays(std::string_view text);

}  // namespace velk
