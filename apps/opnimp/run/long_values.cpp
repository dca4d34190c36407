#include "apps/opnimp/run/long_values.h"

#include <algorithm>
#include <map>
#include <string>

#include "base/errors.h"
#include "base/text.h"

namespace velk {

namespace {

/// Of each procedure, asked for once.
class Catalogue {
 public:
  explicit Catalogue(OwnConnection& database) : database_(database) {}

  const std::vector<CatalogueParameter>& parametersOf(const std::string& procedure) {
    const bool isNew = !known_.contains(procedure);
    std::vector<CatalogueParameter>& parameters = known_[procedure];
    if (isNew) {
      trapErrors([&] { parameters = database_.parametersOf(procedure); },
                 [](const RuntimeError&) {});
    }
    return parameters;
  }

 private:
  OwnConnection& database_;
  std::map<std::string, std::vector<CatalogueParameter>> known_;
};

void addLongValues(const RecordedCall& call, std::size_t record, Catalogue& catalogue,
                   std::vector<LongValue>& found) {
  if (call.kind == CallKind::Query) return;
  const std::vector<CatalogueParameter>& takes = catalogue.parametersOf(call.text);
  for (std::size_t i = 0; i < std::min(takes.size(), call.parameters.size()); ++i) {
    const auto* const text = std::get_if<std::string>(&call.parameters[i]);
    const auto longest = static_cast<std::size_t>(takes[i].length);
    // No text has more UTF-16 units than bytes.
    if (text == nullptr || longest == 0 || text->size() <= longest) continue;
    const std::size_t length = toUtf16(*text).size();
    if (length > longest) found.push_back({record, call.text, takes[i].name, longest, length});
  }
}

}  // namespace

std::vector<LongValue> findLongValues(const Traces& traces, OwnConnection& database) {
  Catalogue catalogue(database);
  std::vector<LongValue> found;
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    for (const RecordedCall* call : traces.records[record].calls) {
      addLongValues(*call, record, catalogue, found);
    }
  }
  return found;
}

}  // namespace velk
