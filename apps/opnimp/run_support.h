// What import and preview share: reading the file, showing messages, saying why View failed.
#pragma once

#include <string>

#include "apps/opnimp/arguments.h"
#include "apps/opnimp/input_records.h"
#include "apps/opnimp/progress.h"
#include "apps/opnimp/recorder.h"
#include "apps/opnimp/streams.h"

namespace velk {

/// Raises CannotOpen.
InputRecords readInput(const std::string& path);

/// That nothing was done, since the memory does not hold the file.
std::string tooLarge(const std::string& path);

/// Why a file of so many records is refused.
std::string tooManyRecords(const ImportKind& kind, std::size_t count);

/// Why a file with such a first line is refused; empty when it has the columns that its kind needs.
std::string columnsRefusal(const ImportKind& kind, const InputRecords& input);

/// Writes each message to `err`, word for word.
MessageHandler messagesTo(std::ostream& err, Progress& progress);

/// Views the file and maps by hand what the arguments say. Raises Refused.
void viewAndMap(class ScreenSession& session, const Arguments& arguments, const InputRecords& input,
                const Recorder& recorder);

}  // namespace velk
