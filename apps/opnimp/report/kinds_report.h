// The columns of the files of each kind.
#pragma once

#include <ostream>
#include <vector>

#include "apps/opnimp/cli/kinds.h"

namespace velk {

void writeKindsText(const std::vector<const ImportKind*>& kinds, std::ostream& out);
void writeKindsJson(const std::vector<const ImportKind*>& kinds, std::ostream& out);

}  // namespace velk
