#include "shared/error_log.h"

namespace velk {

std::string FileErrorLog::path() const {
  return desktop_.applicationFolder() + pathSeparator + "Error.log";
}

// The last file number is kept free for this: a run that has used up all others can still log.
void FileErrorLog::append(std::string_view line) {
  const std::int16_t number = files_.freeFile(NumberedFiles::Use::ErrorLog);
  // Opened and closed for each line, so that the log is complete whenever the process ends.
  files_.openForAppend(number, path());
  try {
    files_.printLine(number, line);
  } catch (...) {
    files_.close(number);
    throw;
  }
  files_.close(number);
}

}  // namespace velk
