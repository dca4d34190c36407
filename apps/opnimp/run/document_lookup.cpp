#include "apps/opnimp/run/document_lookup.h"

#include <string>
#include <unordered_map>

#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/journal/entry_bytes.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "opening/opening_kinds.h"

namespace velk {

namespace {

/// Code, reference, date, bill and balance of a note; its narration follows.
constexpr std::size_t documentParameters = 5;

DataType typeOf(const Value& value) {
  if (std::holds_alternative<double>(value)) return DataType::Double;
  return std::holds_alternative<Date>(value) ? DataType::Date : DataType::VarChar;
}

/// What the counter knows a document by: not by its narration.
std::string documentKey(const RecordedCall& note) {
  EntryWriter key;
  key.text(note.text);
  for (const Value& value : std::span(note.parameters).first(documentParameters)) key.value(value);
  return std::string(key.payload());
}

}  // namespace

bool DocumentLookup::isNote(const RecordedCall& call) const {
  const OpeningImportKind* const opening = kind_.opening;
  return call.kind == CallKind::Procedure && opening != nullptr &&
         (call.text == opening->debitNote || call.text == opening->creditNote);
}

DocumentLookup::Found DocumentLookup::find(const RecordedCall& note, std::size_t madeBefore) {
  if (!isNote(note)) return Found::NotKnown;
  const std::optional<std::int64_t> found = count(note);
  if (!found) return Found::NotKnown;
  return *found > static_cast<std::int64_t>(madeBefore) ? Found::Some : Found::None;
}

/// Empty where it cannot be told: without the procedure, or the right to it.
std::optional<std::int64_t> DocumentLookup::count(const RecordedCall& note) {
  std::vector<ProcedureParameter> parameters{{note.text}};
  for (const Value& value : std::span(note.parameters).first(documentParameters)) {
    parameters.push_back({value, typeOf(value)});
  }
  std::optional<std::int64_t> count;
  const auto ask = [&] {
    if (connection_.isRefused(documentCounter, parameters.size())) return;
    const auto answer = runProcedure(connection_, {documentCounter, parameters}, Purpose::Ask);
    if (answer->State() == stateClosed || answer->isEOF()) return;
    count = exactNumber<std::int64_t>(toText(answer->field(0)));
  };
  gate_.requireOpen();
  trapErrors([&] { gate_.pass(ask); }, [](const RuntimeError&) {});
  return count;
}

std::vector<std::size_t> documentsBefore(std::span<const RecordedCall* const> calls) {
  std::vector<std::size_t> before(calls.size());
  std::unordered_map<std::string, std::size_t> made;
  for (std::size_t call = 0; call < calls.size(); ++call) {
    if (calls[call]->parameters.size() <= documentParameters) continue;
    std::size_t& count = made[documentKey(*calls[call])];
    before[call] = count;
    if (isEffective(*calls[call])) ++count;
  }
  return before;
}

}  // namespace velk
