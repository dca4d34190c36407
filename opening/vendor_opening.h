// What the import of vendor opening balances says and calls.
#pragma once

#include "mapping/opening_screen.h"
#include "opening/opening_import.h"

namespace velk {

extern const OpeningImportKind vendorOpening;

/// The vendor screen's Import button.
void importVendorOpening(OpeningScreen& screen);

}  // namespace velk
