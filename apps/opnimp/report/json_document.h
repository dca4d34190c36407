// The JSON documents that commands write, and the parts that they share.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/convert/assumption.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/title_suggestions.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

/// Members keep the order in which they are made.
using Json = nlohmann::ordered_json;

/// An empty text is null.
Json orNull(const std::string& text);
Json mappingJson(const std::vector<FieldMapping>& mapping);
Json suggestionsJson(const std::vector<TitleSuggestion>& suggestions);
/// `placeWord`: what the lines of a warning are, see InputRecords.
Json warningsJson(const std::vector<Warning>& warnings, std::string_view placeWord);

Json assumedJson(const std::vector<Assumption>& assumptions);

/// Its text, in valid UTF-8 whatever the texts in it contain.
std::string textOf(Json json);
/// The document of a command that ended before it had a report.
void writeErrorDocument(ExitStatus status, const std::string& text, std::ostream& out);

}  // namespace velk
