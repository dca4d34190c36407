#include "apps/opnimp/journal/record_hash.h"

#include <string>

#include "base/date_reader.h"
#include "base/errors.h"
#include "base/numbers.h"

namespace velk {

namespace {

// What cannot be read counts as it is written: no such record is posted.
std::string readAmount(std::string text) {
  trapErrors([&] { text = toText(leadingNumber(text)); }, [](const RuntimeError&) {});
  return text;
}

std::string readDay(std::string text, int currentYear) {
  const auto reading = readDate(text, currentYear);
  return reading ? formatDayFirst(reading->date) : std::move(text);
}

/// The values that are posted, in the order of their fields.
std::vector<std::string> postedValues(const ImportKind& kind,
                                      const std::vector<std::string>& fields,
                                      const std::vector<FieldMapping>& mapping, int currentYear) {
  const auto cell = [&](std::size_t field) { return mappedCell(fields, mapping, field); };
  std::vector<std::string> values;
  if (kind.opening != nullptr) {
    return {cell(openingField::code), cell(openingField::reference),
            readDay(cell(openingField::date), currentYear), readAmount(cell(openingField::bill)),
            readAmount(cell(openingField::balance))};
  }
  for (std::size_t field = 0; field < mapping.size(); ++field) values.push_back(cell(field));
  return values;
}

}  // namespace

Digest hashOf(std::string_view bytes) {
  return Sha256().add(bytes).finish();
}

// Each value comes behind its length, so that none can pass for parts of two.
std::vector<JournaledRecord> hashRecords(const ImportKind& kind, const InputRecords& input,
                                         const std::vector<FieldMapping>& mapping,
                                         int currentYear) {
  std::vector<JournaledRecord> records;
  records.reserve(input.count());
  const std::size_t width = mappedWidth(mapping);
  EntryWriter writer;
  for (std::size_t record = 0; record < input.count(); ++record) {
    writer.clear();
    const auto fields = input.fields(record, width);
    for (const std::string& value : postedValues(kind, fields, mapping, currentYear)) {
      writer.text(value);
    }
    records.push_back({input.place(record).line, hashOf(writer.payload())});
  }
  return records;
}

}  // namespace velk
