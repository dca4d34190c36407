// What a record of the file asks an import to post, read from its bytes and independent of the
// import.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/opnimp/cli/kinds.h"
#include "base/values.h"

namespace velk {

/// A procedure call with those of its parameters, by position, that the file gives as they are.
struct ExpectedCall {
  std::string_view procedure;
  std::vector<std::pair<std::size_t, Value>> parameters;
};

struct ExpectedPosting {
  double bill = 0;
  double balance = 0;
  std::vector<ExpectedCall> calls;  ///< none: there is nothing to post
};

/// The text of one of the record's fields, without its quotes.
using CellReader = std::function<std::string(std::size_t field)>;

// What a salesman's cells come to.
std::string salesmanName(const std::string& cell);
std::string handheldValue(const std::string& cell);
/// "YES", "NO", or, for every other value, "No".
std::string_view savedHandheld(std::string_view value);

/// Error 6 for an amount beyond the range of numbers.
ExpectedPosting expectedPosting(const ImportKind& kind, const CellReader& cell);

}  // namespace velk
