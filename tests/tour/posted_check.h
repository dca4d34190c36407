// What the sample files leave in the database.
#pragma once

#include <cstddef>
#include <string>

namespace velk {

/// Compares the database, and the number of lines that the error log grew by, with what the files
/// of the tour should come to. Error 5, naming every difference.
void checkPosted(const std::string& connectionString, std::size_t logLines);

}  // namespace velk
