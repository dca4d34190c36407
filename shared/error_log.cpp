#include "shared/error_log.h"

#include <string>
#include <utility>

namespace velk {

std::string FileErrorLog::path() const {
  return desktop_.applicationFolder() + pathSeparator + "Error.log";
}

// The last file number is kept free for this: a run that has used up all others can still log.
void FileErrorLog::append(std::string_view line) {
  const std::int16_t number = files_.freeFile(NumberedFiles::Use::ErrorLog);
  // Where the last line became whole this one begins anew: no need to look.
  const bool isTorn = std::exchange(mayBeTorn_, true) && files_.endsWithinLine(path());
  // Opened and closed for each line, so that the log is complete whenever the process ends.
  files_.openForAppend(number, path());
  try {
    files_.printLine(number, isTorn ? "\r\n" + std::string(line) : line);
  } catch (...) {
    files_.close(number);
    throw;
  }
  files_.close(number);
  mayBeTorn_ = false;
}

}  // namespace velk
