#include "apps/opnimp/audit/party_totals.h"

#include <map>
#include <utility>

#include "base/text.h"

namespace velk {

std::vector<PartyTotals> partyTotals(const ImportKind& kind, const InputRecords& input,
                                     const std::vector<FieldMapping>& mapping,
                                     const Traces& traces) {
  if (kind.opening == nullptr) return {};
  const std::size_t width = mappedWidth(mapping);
  std::map<std::string, PartyTotals> parties;
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    const auto fields = input.fields(record, width);
    const std::string_view code = mappedCell(fields, mapping, openingField::code);
    PartyTotals& party = parties[lowerAscii(code)];
    if (party.file.count == 0) {
      party.code = code;
      party.name = mappedCell(fields, mapping, openingField::name);
    }
    // An amount beyond the range of numbers counts, without being added.
    const FileAmounts amounts =
        amountsOf(kind, input, mapping, record, width).value_or(FileAmounts{});
    addTo(party.file, amounts.bill, amounts.bill, amounts.balance);
    if (!isPosted(traces.records[record].outcome)) continue;
    addTo(party.posted, amounts.bill, amounts.bill, amounts.balance);
  }
  std::vector<PartyTotals> list;
  list.reserve(parties.size());
  for (auto& entry : parties) list.push_back(std::move(entry.second));
  return list;
}

}  // namespace velk
