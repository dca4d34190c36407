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
constexpr std::ptrdiff_t documentParameters = 5;

DataType typeOf(const Value& value) {
  if (std::holds_alternative<double>(value)) return DataType::Double;
  return std::holds_alternative<Date>(value) ? DataType::Date : DataType::VarChar;
}

/// Whether the counter takes the one for the other, whatever their narrations are.
bool isSameDocument(const RecordedCall& a, const RecordedCall& b) {
  return a.text == b.text && a.parameters.size() == b.parameters.size() &&
         std::equal(a.parameters.begin(), a.parameters.begin() + documentParameters,
                    b.parameters.begin());
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
  std::vector<Value> values{note.text};
  values.insert(values.end(), note.parameters.begin(),
                note.parameters.begin() + documentParameters);
  std::optional<std::int64_t> count;
  const auto ask = [&] {
    if (connection_.isRefused(documentCounter, values.size())) return;
    const auto command = connection_.newCommand();
    command->setCommandType(CommandType::StoredProcedure);
    command->setCommandText(documentCounter);
    command->setPurpose(Purpose::Ask);
    for (std::size_t i = 0; i < values.size(); ++i) {
      command->Append("Param" + std::to_string(i), static_cast<std::int32_t>(typeOf(values[i])),
                      inputParameter, parameterSize);
      command->setValue(i, values[i]);
    }
    const auto answer = command->Execute(defaultOptions);
    if (answer->State() == stateClosed || answer->isEOF()) return;
    count = exactNumber<std::int64_t>(toText(answer->field(0)));
  };
  gate_.requireOpen();
  trapErrors([&] { gate_.pass(ask); }, [](const RuntimeError&) {});
  return count;
}

}  // namespace velk
