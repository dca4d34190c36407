// Warnings about the text of a comma-separated file: its bytes, titles and separators.
#pragma once

#include <string_view>
#include <vector>

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

/// True for a text in UTF-8 that has letters beyond ASCII.
bool isUtf8(std::string_view bytes);

void warnOfText(const CsvRecords& input, const ImportKind& kind, std::vector<Warning>& warnings);

}  // namespace velk
