// Connection strings of the data access library that Windows programs use, told in ODBC's words.
#pragma once

#include <string>
#include <string_view>

namespace velk {

/// What of such a string has an equivalent, as an ODBC connection string; without the password.
std::string odbcEquivalent(std::string_view adoString);

}  // namespace velk
