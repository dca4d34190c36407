#include "apps/opnimp/run/long_values.h"

#include <algorithm>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/run/company_needs.h"
#include "base/errors.h"
#include "base/text.h"

namespace velk {

namespace {

void findInCall(const RecordedCall& call, std::size_t record, Catalogue& catalogue,
                std::vector<LongValue>& found) {
  if (call.kind == CallKind::Query) return;
  const std::vector<CatalogueParameter>& takes = catalogue.parametersOf(call.text);
  for (std::size_t i = 0; i < std::min(takes.size(), call.parameters.size()); ++i) {
    const auto* const text = std::get_if<std::string>(&call.parameters[i]);
    const auto longest = static_cast<std::size_t>(takes[i].length);
    // No text has more UTF-16 units than bytes.
    if (text == nullptr || longest == 0 || text->size() <= longest) continue;
    const std::size_t length = toUtf16(*text).size();
    if (length > longest)
      found.push_back({record, call.text, takes[i].name, longest, length, *text});
  }
}

}  // namespace

const std::vector<CatalogueParameter>& Catalogue::parametersOf(const std::string& procedure) {
  const bool isNew = !known_.contains(procedure);
  std::vector<CatalogueParameter>& parameters = known_[procedure];
  const auto ask = [&] { parameters = database_.parametersOf(procedure); };
  // Then the import asks it something, too, and says what is wrong.
  if (isNew) trapErrors([&] { gate_.pass(ask); }, [](const RuntimeError&) {});
  return parameters;
}

bool Catalogue::tellsLengths(const ImportKind& kind) {
  return std::ranges::any_of(needsOf(kind).procedures, [&](const ProcedureNeed& need) {
    return std::ranges::any_of(parametersOf(std::string(need.name)),
                               [](const auto& parameter) { return parameter.length > 0; });
  });
}

std::vector<LongValue> findLongValues(const ImportResult& result, Catalogue& catalogue) {
  std::vector<LongValue> found;
  for (std::size_t record = 0; record < result.traces.records.size(); ++record) {
    for (const RecordedCall* call : result.traces.records[record].calls) {
      const std::size_t before = found.size();
      findInCall(*call, record, catalogue, found);
      for (std::size_t i = before; i < found.size(); ++i) {
        found[i].line = result.input->place(record).line;
      }
    }
  }
  return found;
}

// A run may leave out records before its first one: they are known by their lines.
void addLongValues(std::vector<Warning>& warnings, std::span<const LongValue> values,
                   const InputRecords& input) {
  std::size_t record = 0;
  const LongValue* last = nullptr;
  for (const LongValue& value : values) {
    // A code goes to several procedures.
    const bool isKnown = last != nullptr && last->line == value.line && last->text == value.text;
    last = &value;
    while (record < input.count() && input.place(record).line < value.line) ++record;
    if (isKnown || record == input.count() || input.place(record).line != value.line) continue;
    addWarning(warnings, WarningId::ValueTooLong,
               {record, value.line, "", value.text,
                "the first " + grouped(value.takes) + " of its " + grouped(value.length) +
                    " characters, or is refused: " + value.parameter + " of " + value.procedure +
                    " takes no more"});
  }
}

}  // namespace velk
