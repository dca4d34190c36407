// Dates that the database is asked for.
#pragma once

#include <string_view>

#include "base/dates.h"
#include "platform/database.h"

namespace velk {

/// The first field of the first row. Without a row it is the day 0 of dates, 30 December 1899.
/// `currentYear` fills a missing year.
Date answeredDate(Connection& connection, std::string_view query, int currentYear);

/// The company's first transaction date: documents are of days before it.
Date firstTransactionDate(Connection& connection, int currentYear);

/// What a document without a date of its own gets.
inline Date dateOfUndated(Date firstTransaction) {
  return Date{firstTransaction.days - 1};
}

}  // namespace velk
