// Warnings about the text of a comma-separated file: its bytes, titles and separators.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

/// True for a text in UTF-8 that has letters beyond ASCII.
bool isUtf8(std::string_view bytes);

/// The one thing that is wrong with a file of which nothing is understood: all else that would be
/// found in it only follows from that. Empty if there is none. Of a file that no import takes.
std::optional<Warning> faultOfFile(const CsvRecords& input, const ImportKind& kind,
                                   const std::vector<FieldMapping>& mapping);

void warnOfText(const CsvRecords& input, const ImportKind& kind, std::vector<Warning>& warnings);

}  // namespace velk
