#include "apps/opnimp/records/input_records.h"

#include <utility>

#include "base/errors.h"
#include "shared/csv_text.h"

namespace velk {

std::string InputRecords::where(std::size_t record) const {
  return std::string(placeWord()) + " " + std::to_string(place(record).line);
}

const Conversion& InputRecords::conversion() const {
  static const Conversion none;
  return none;
}

// Only the field of one double quote cannot be unquoted. The module logs it, which the runner's own
// reading must not.
std::string withoutQuotes(std::string field) {
  try {
    field.resize(unquoteInPlace(field.data(), field.size()));
  } catch (const RuntimeError&) {
    field.clear();
  }
  return field;
}

std::string previewCell(std::string written) {
  std::erase(written, ',');
  return withoutQuotes(std::move(written));
}

}  // namespace velk
