#include "opening/company_dates.h"

#include "opening/opening_kinds.h"

namespace velk {

Date answeredDate(Connection& connection, std::string_view query, int currentYear) {
  Date date;
  const auto reply = connection.Execute(query);
  if (!(reply->isBOF() && reply->isEOF())) date = toDate(reply->field(0), currentYear);
  reply->Close();
  return date;
}

Date firstTransactionDate(Connection& connection, int currentYear) {
  return answeredDate(connection, firstDateQuery, currentYear);
}

}  // namespace velk
