#include "apps/opnimp/run/refusals.h"

#include <cstddef>
#include <optional>
#include <string>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/run/company_needs.h"
#include "base/date_reader.h"
#include "base/errors.h"
#include "mapping/import_run.h"
#include "opening/opening_kinds.h"

namespace velk {

namespace {

std::string unmappedIn(const std::string& fields, const InputRecords& input) {
  return unmappedText(fields) + ". The file has: " + listed(input.titles());
}

std::string valueMissingText(const std::string& field, const InputRecords& input,
                             std::size_t record) {
  return field + " is empty in " + input.where(record) + " (record " + std::to_string(record + 1) +
         "); it must not be empty in any record";
}

std::string misreadingsText(const std::vector<Warning>& warnings, const Arguments& arguments) {
  const auto codes = notAccepted(warnings, arguments.accept);
  if (codes.empty()) return {};
  std::string listed;
  for (const std::string_view code : codes) listed.append(listed.empty() ? "" : ",").append(code);
  return "what would be posted is not what is written. Correct what the warnings name, or import "
         "it as it is read, with --accept " +
         listed;
}

// What cannot be asked for the import asks again, and tells.
void requireFirstDate(const std::function<std::optional<Date>()>& firstDate) {
  const std::optional<Date> date = firstDate();
  if (!date || date->days != 0) return;
  throw Refused("the database has no first transaction date (" + std::string(firstDateQuery) +
                "): " + std::string(noFirstDate) + ". Enter it in the company's settings first");
}

void requireValues(const ImportResult& result) {
  const InputRecords& input = *result.input;
  const std::size_t width = mappedWidth(result.mapping);
  for (std::size_t record = 0; record < input.count(); ++record) {
    const auto fields = input.fields(record, width);
    for (const std::size_t field : result.arguments.kind->mandatory) {
      if (!mappedCell(fields, result.mapping, field).empty()) continue;
      throw Refused(valueMissingText(result.mapping.at(field).field, input, record));
    }
  }
}

}  // namespace

// What is wrong with the file itself is told first: it explains whatever else did not go.
std::string viewRefusalText(const ImportReport& report, const InputRecords& input,
                            const ImportKind& kind) {
  if (std::string fault = input.refusal(kind); !fault.empty()) return fault;
  const auto& refusal = report.refusal();
  if (refusal && refusal->why.reason == Reason::CaptionMismatch) {
    return "the database does not know the caption \"DSType\" of the DS types: is it the right "
           "database?";
  }
  // From the most exact word to the least: a refusal, the end of the run, the end of one step.
  const std::string& said = refusal                 ? refusal->text
                            : report.stop().empty() ? report.lastError()
                                                    : report.stop();
  return "the file could not be viewed" + (said.empty() ? "" : ": " + said);
}

// In the order in which the user has to mend things: the file, its columns, its values.
std::string unmappedText(const std::string& fields) {
  return "no column of the file is mapped to " + fields +
         "; rename the column, or use --map \"Field=Column\"";
}

std::string runRefusalText(const Said& refusal, const InputRecords& input,
                           const std::vector<FieldMapping>& mapping, const ImportKind& kind) {
  if (std::string fault = input.refusal(kind); !fault.empty()) return fault;
  const std::string unmapped = unmappedFields(mapping, kind.mandatory);
  if (!unmapped.empty()) return unmappedIn(unmapped, input);
  if (refusal.why.reason != Reason::ValueMissing) return refusal.text;
  return valueMissingText(mapping.at(refusal.why.field.value()).field, input,
                          refusal.row - ImportRun::firstDataRow);
}

// With no record to look at, the screen imports a file that lacks mandatory columns.
void requireImportable(const ImportResult& result) {
  const InputRecords& input = *result.input;
  const ImportKind& kind = *result.arguments.kind;
  const std::string fault = input.refusal(kind);
  const std::string unmapped = unmappedFields(result.mapping, kind.mandatory);
  if (input.count() == 0 && !unmapped.empty()) {
    throw Refused(fault.empty() ? "the file has no records, and " + unmappedIn(unmapped, input)
                                : fault);
  }
  if (!unmapped.empty() || !fault.empty()) return;
  const std::string misread = misreadingsText(result.warnings, result.arguments);
  if (!misread.empty()) throw Refused(misread);
}

void requireDates(const ImportResult& result, Date earliest, int currentYear,
                  const std::function<std::optional<Date>()>& firstDate) {
  if (result.arguments.kind->opening == nullptr) return;
  const std::size_t width = mappedWidth(result.mapping);
  std::string found;
  std::size_t count = 0;
  bool hasUndated = false;
  for (std::size_t record = 0; record < result.input->count(); ++record) {
    const auto fields = result.input->fields(record, width);
    const std::string_view text = mappedCell(fields, result.mapping, openingField::date);
    if (text.empty()) {
      hasUndated = true;
      continue;
    }
    const auto reading = readDate(text, currentYear);
    if (!reading || !(reading->date < earliest)) continue;
    if (++count == 1) found = result.input->where(record) + " (" + std::string(text) + ")";
  }
  if (hasUndated) requireFirstDate(firstDate);
  if (count == 0) return;
  throw Refused("the database holds no date before " + formatDayFirst(earliest) + ": " + found +
                (count == 1 ? "" : " and " + std::to_string(count - 1) + " more") +
                "; correct the dates");
}

void requireWhole(const ImportResult& result) {
  const ImportKind& kind = *result.arguments.kind;
  if (const std::string fault = result.input->refusal(kind); !fault.empty()) throw Refused(fault);
  const std::string unmapped = unmappedFields(result.mapping, kind.mandatory);
  if (!unmapped.empty()) throw Refused(unmappedIn(unmapped, *result.input));
  requireValues(result);
}

}  // namespace velk
