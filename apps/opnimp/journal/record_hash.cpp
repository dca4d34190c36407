#include "apps/opnimp/journal/record_hash.h"

#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>

#include "base/date_reader.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

// What cannot be read counts as it is written: no such record is posted.
Value readAmount(std::string_view text) {
  Value amount;
  const bool read = trapErrors([&] { amount = leadingNumber(text); }, [](const RuntimeError&) {});
  return read ? amount : Value(std::string(text));
}

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
    const std::optional<Date> date = text.empty() ? undated() : dateIn(text);
    return date ? Value(Date{std::trunc(date->days)}) : Value(std::string(text));
  }
  std::optional<Date> undated() const { return by_.undated ? by_.undated() : std::nullopt; }
  std::optional<Date> dateIn(std::string_view text) const {
    const auto reading = readDate(text, by_.currentYear);
    return reading ? std::optional(reading->date) : std::nullopt;
  }

  const HashBasis& by_;
  std::unordered_map<std::string, Value> known_;
};

/// The balance goes to the side of its bill, whatever its own sign.
Value onSideOf(const Value& bill, const Value& balance) {
  const auto* const ofBill = std::get_if<double>(&bill);
  const auto* const ofBalance = std::get_if<double>(&balance);
  if (ofBill == nullptr || ofBalance == nullptr) return balance;
  return *ofBill > 0 ? std::abs(*ofBalance) : -std::abs(*ofBalance);
}

// Databases compare codes without letter case, and many without the blanks at the end. In capitals,
// as most codes are written.
std::string keyOf(std::string_view text) {
  return upperAscii(trim(text));
}

/// Writes the values that are posted, in the order of their fields.
void writePosted(EntryWriter& to, const ImportKind& kind, const std::vector<std::string>& fields,
                 const std::vector<FieldMapping>& mapping, DayReader& days, bool asWritten) {
  const auto cell = [&](std::size_t field) { return mappedCell(fields, mapping, field); };
  if (kind.opening != nullptr) {
    to.text(keyOf(cell(openingField::code))).text(keyOf(cell(openingField::reference)));
    to.value(days.read(cell(openingField::date)));
    const Value bill = readAmount(cell(openingField::bill));
    const Value balance = readAmount(cell(openingField::balance));
    to.value(bill).value(asWritten ? balance : onSideOf(bill, balance));
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
