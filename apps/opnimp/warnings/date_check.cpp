#include "apps/opnimp/warnings/date_check.h"

#include "base/date_reader.h"

namespace velk {

namespace {

/// Older documents than this are not open any more.
constexpr int longestAgo = 50;

std::optional<WarningId> doubtOf(const DateReading& reading, int currentYear) {
  if (!reading.hasYear) return WarningId::DateWithoutYear;
  if (!reading.hasDay) return WarningId::DateWithoutDay;
  if (civilFromDate(reading.date).year < currentYear - longestAgo) return WarningId::DateLongPast;
  if (reading.order == DateOrder::MonthDayYear) return WarningId::DateMonthFirst;
  if (reading.ambiguous) return WarningId::DateReadsBothWays;
  return std::nullopt;
}

}  // namespace

std::optional<DateWarning> checkDate(const std::string& text, int currentYear, bool endsRun) {
  const std::optional<DateReading> reading = readDate(text, currentYear);
  if (!reading) {
    if (text.empty() || !endsRun) return std::nullopt;
    return DateWarning{WarningId::DateUnreadable, "no date, and the import stops there"};
  }
  const std::optional<WarningId> doubt = doubtOf(*reading, currentYear);
  if (!doubt) return std::nullopt;
  return DateWarning{*doubt, formatDayFirst(reading->date)};
}

}  // namespace velk
