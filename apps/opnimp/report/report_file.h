// The file of --report.
#pragma once

#include <string>
#include <string_view>

namespace velk {

/// Makes sure that the file can be written, and is not there: a report is kept. Raises UsageError
/// and CannotOpen.
void checkReportFile(const std::string& path);

/// Writes the page as a whole or not at all. Errors: as before.
void writeReportFile(const std::string& path, std::string_view page);

}  // namespace velk
