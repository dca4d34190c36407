// Dates as people and programs write them, and what they say of the order of day and month.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/date_reader.h"

namespace velk {

enum class DateClue : std::uint8_t {
  None,        ///< no date with day and year: it is left as it is
  AnyOrder,    ///< 5 Mar 2008, 2008-03-31, 05/05/2008
  DayFirst,    ///< 31/03/2008
  MonthFirst,  ///< 03/31/2008
  EitherFirst  ///< 03/04/2008
};

struct DateText {
  DateClue clue = DateClue::None;
  CivilDate date{};       ///< by its day first, if that makes sense
  bool isUnread = false;  ///< 20080331 or 2008-03-31T00:00:00: not by the screens
};

/// `text` has no blanks around it.
DateText readDateText(std::string_view text);

/// The date in the way that the screens read; empty where it makes no sense with `order`. Nothing
/// but dates with day and year is asked for.
std::optional<std::string> canonicalDate(std::string_view text, const DateText& date,
                                         DateOrder order);

}  // namespace velk
