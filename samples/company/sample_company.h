// The sample company: a small distributor on 1 April 2008, with everything that an import reads or
// writes, as an embedded database.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace velk {

/// What makes the sample company, in UTF-8 and in the order to run it.
std::span<const std::string_view> sampleCompanyStatements();

/// Makes the sample company's database in a new file. If anything fails, no file is left.
/// Errors: 55 when the file exists, 52 for a name that an embedded database cannot have, 75 when
/// the file cannot be made there; else what the database reports.
void createSampleCompany(const std::string& path);

}  // namespace velk
