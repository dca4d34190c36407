#include "apps/opnimp/run/document_lookup.h"

#include <algorithm>
#include <string>
#include <vector>

#include "apps/opnimp/audit/outcome.h"
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

/// Whether the counter takes the one for the other, whatever their narrations are.
bool isSameDocument(const RecordedCall& a, const RecordedCall& b) {
  return a.text == b.text && a.parameters.size() == b.parameters.size() &&
         std::ranges::equal(std::span(a.parameters).first(documentParameters),
                            std::span(b.parameters).first(documentParameters));
}

}  // namespace

bool DocumentLookup::isNote(const RecordedCall& call) const {
  const OpeningImportKind* const opening = kind_.opening;
  return call.kind == CallKind::Procedure && opening != nullptr &&
         (call.text == opening->debitNote || call.text == opening->creditNote);
}

DocumentLookup::Found DocumentLookup::find(const RecordedCall& note,
                                           std::span<const RecordedCall> before) {
  if (!isNote(note)) return Found::NotKnown;
  const auto same = std::ranges::count_if(before, [&](const RecordedCall& call) {
    return isEffective(call) && isSameDocument(call, note);
  });
  const std::optional<std::int64_t> found = count(note);
  if (!found) return Found::NotKnown;
  return *found > same ? Found::Some : Found::None;
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

}  // namespace velk
