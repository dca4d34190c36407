#include "apps/opnimp/journal/record_hash.h"

#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>

#include "apps/opnimp/records/posted_values.h"

namespace velk {

namespace {

/// Reads days. A file has few, so that most were read before.
class DayReader {
 public:
  explicit DayReader(const HashBasis& by) : by_(by) {}

  Value read(std::string_view text) {
    constexpr std::size_t longest = 16;  // the room of a text without memory of its own
    constexpr std::size_t mostKept = 4096;
    if (text.size() >= longest || known_.size() == mostKept) return readAnew(text);
    const auto [known, isNew] = known_.try_emplace(std::string(text));
    if (isNew) known->second = readAnew(text);
    return known->second;
  }

 private:
  Value readAnew(std::string_view text) const {
    if (text.empty() && by_.undated) {
      if (const auto date = by_.undated()) return Date{std::trunc(date->days)};
    }
    return postedDay(text, by_.currentYear);
  }

  const HashBasis& by_;
  std::unordered_map<std::string, Value> known_;
};

/// Writes the values that are posted, in the order of their fields.
void writePosted(EntryWriter& to, const ImportKind& kind, const std::vector<std::string>& fields,
                 const std::vector<FieldMapping>& mapping, DayReader& days, bool asWritten) {
  const auto cell = [&](std::size_t field) { return mappedCell(fields, mapping, field); };
  if (kind.opening != nullptr) {
    to.text(comparedText(cell(openingField::code)))
        .text(comparedText(cell(openingField::reference)));
    to.value(days.read(cell(openingField::date)));
    const Value bill = postedAmount(cell(openingField::bill));
    const Value balance = postedAmount(cell(openingField::balance));
    to.value(bill).value(asWritten ? balance : postedBalance(bill, balance));
    return;
  }
  for (std::size_t field = 0; field < mapping.size(); ++field) to.text(cell(field));
}

}  // namespace

Digest hashOf(std::string_view bytes) {
  return Sha256().add(bytes).finish();
}

// Each value comes behind its length, so that none can pass for parts of two.
std::vector<JournaledRecord> hashRecords(const ImportKind& kind, const InputRecords& input,
                                         const std::vector<FieldMapping>& mapping,
                                         const HashBasis& by) {
  std::vector<JournaledRecord> records;
  records.reserve(input.count());
  const std::size_t width = mappedWidth(mapping);
  EntryWriter writer;
  DayReader days(by);
  for (std::size_t record = 0; record < input.count(); ++record) {
    writer.clear();
    writePosted(writer, kind, input.fields(record, width), mapping, days, by.asWritten);
    records.push_back({input.place(record).line, hashOf(writer.payload())});
  }
  return records;
}

}  // namespace velk
