// The account of an import as text.
#pragma once

#include <ostream>
#include <string_view>

#include "apps/opnimp/audit/account.h"
#include "apps/opnimp/cli/arguments.h"

namespace velk {

/// A table of counts and amounts, and whether it adds up. `file`: what the row of the file's own
/// sums is called.
void writeAccount(const Account& account, const Arguments& arguments, std::string_view file,
                  std::ostream& out);

}  // namespace velk
