// What the import of customer opening balances says and calls.
#pragma once

#include "mapping/opening_screen.h"
#include "opening/opening_import.h"

namespace velk {

extern const OpeningImportKind customerOpening;

/// The customer screen's Import button.
void importCustomerOpening(OpeningScreen& screen);

}  // namespace velk
