// What an import has to call for a file: every rule of quoting, trimming and posting a second time,
// written independently of the imports, for tests that hold one against the other.
#pragma once

#include <string>
#include <vector>

#include "apps/opnimp/cli/kinds.h"

namespace velk {

/// A record's values as the mapping list has them, by field; fields that are not mapped are empty.
using OracleRecord = std::vector<std::string>;

/// The procedure calls, each as described() writes it, that an import of these records makes. The
/// company's first transaction date is 1 April 2008, its clock shows that year; codes that
/// begin with X are unknown; the DS types Retail and ""Q"" (with its quotes) are valid, Old is
/// inactive, Van no default value, and all others are unknown.
std::vector<std::string> expectedCalls(const ImportKind& kind,
                                       const std::vector<OracleRecord>& records);

}  // namespace velk
