// Parts that the text reports of import and preview share.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "apps/opnimp/audit/account.h"
#include "apps/opnimp/convert/assumption.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

/// Rows of as many cells each, in columns; those from `leftColumns` on hold numbers, to the right.
void writeTable(const std::vector<std::vector<std::string>>& rows, std::size_t leftColumns,
                std::ostream& out);
/// Such as "Amount Due (#3)", or "not mapped".
std::string columnText(const FieldMapping& entry);
/// Where a warning was found, such as "lines 2, 5, ..., in Date"; empty for the file as a whole.
/// `placeWord`: what the lines are, see InputRecords.
std::string placesOf(const Warning& warning, std::string_view placeWord);
/// That amounts are missing in the sums of the account.
std::string unreadableText(const Account& account);
/// How many items of a list there are beyond those shown; nothing if there are none.
void writeMore(std::size_t count, std::size_t shown, std::ostream& out);
void writeMapping(const std::vector<FieldMapping>& mapping, std::ostream& out);
/// Commands to go on with; nothing if there are none.
void writeCommands(const std::vector<std::string>& commands, std::ostream& out);
/// What a conversion took for granted; nothing if that is nothing.
void writeAssumed(const std::vector<Assumption>& assumptions, std::ostream& out);
/// `placeWord`: what the lines of a warning are, see InputRecords.
void writeWarnings(const std::vector<Warning>& warnings, std::string_view placeWord,
                   std::ostream& out);

}  // namespace velk
