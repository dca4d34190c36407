// Warnings about amounts and dates.
#include <optional>

#include "apps/opnimp/amount_check.h"
#include "apps/opnimp/warnings.h"
#include "platform/dates.h"

namespace velk {

namespace {

void warnOfDate(const std::string& cell, std::size_t line, bool endsRun, int currentYear,
                Warnings& warnings) {
  const std::optional<DateReading> reading = readDate(cell, currentYear);
  if (!reading) {  // where it ends no run, the import says so itself
    if (!endsRun || cell.empty()) return;
    warnings.add("date-unreadable",
                 "A date cannot be read: the import stops at this record. Correct it first.", line);
  } else if (reading->order == DateOrder::MonthDayYear) {
    warnings.add("date-month-first",
                 "A date makes sense only with the month first. Dates are read day first: if the "
                 "file has the month first, those that read both ways are taken wrongly.",
                 line);
  } else if (reading->ambiguous) {
    warnings.add("date-reads-both-ways",
                 "A date reads day first and month first; it is taken day first: 03/04/2008 is 3 "
                 "April.",
                 line);
  }
}

}  // namespace

void warnOfValues(const InputRecords& input, const ImportKind& kind,
                  const std::vector<FieldMapping>& mapping, int currentYear, Warnings& warnings) {
  const std::size_t width = mappedWidth(mapping);
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t line = input.place(record).line;
    const auto fields = input.fields(record, QuotedComma::Keep, width);
    for (const std::size_t amount : {kind.fields.bill, kind.fields.balance}) {
      const auto issue = checkAmount(mappedCell(fields, mapping, amount));
      if (issue) warnings.add(issue->code, issue->text, line);
    }
    warnOfDate(mappedCell(fields, mapping, kind.fields.date), line,
               kind.opening->invalidDate.empty(), currentYear, warnings);
  }
}

}  // namespace velk
