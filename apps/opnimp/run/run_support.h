// What import, preview and export share: reading the file, where they may write, showing messages.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/report/events.h"
#include "apps/opnimp/run/database_choice.h"
#include "base/errors.h"
#include "platform/headless/message.h"

namespace velk {

/// Reads standard input where the arguments name it as a file. Raises UsageError where it can be
/// none, and CannotOpen.
void takeStandardInput(Arguments& arguments, const Surroundings& surroundings);

/// The records of the file to import or preview. Raises CannotOpen.
std::unique_ptr<const InputRecords> readInput(const Arguments& arguments);

/// The records of a text of these bytes. Raises UsageError.
std::unique_ptr<const CsvRecords> convertedRecords(std::string bytes, const Arguments& arguments);

/// The bytes of a file. Raises CannotOpen.
std::string readFile(const std::string& path);
/// The same of one that may be standard input.
std::string readFile(const std::string& path, const Arguments& arguments);

/// The folder of the error log: absolute, without a separator at its end. Raises CannotOpen.
std::string applicationFolder(const std::optional<std::string>& option);

struct Writes {
  std::string_view writer;         ///< as the user knows it, such as "--rejects"
  std::string named;               ///< the path that the user gave
  std::vector<std::string> paths;  ///< all that are written
};
/// Raises UsageError when one of them is the database, the error log or one of the files to import,
/// or when two of them name one file.
void checkWrites(const std::vector<Writes>& several, const DatabaseChoice& database,
                 const std::string& folder, const std::vector<std::string>& inputs);

/// Raises UsageError when two paths name one file.
void requireDistinct(const std::vector<std::string>& inputs);

/// That nothing was done, since the memory does not hold the file.
std::string tooLarge(const std::string& path);

/// Whether the database does not know the table or the statement, as one of another application.
bool isOfSchema(const RuntimeError& error);

/// Tells each message, word for word.
MessageHandler messagesTo(Events& events);

/// Views the file and maps by hand what the arguments say, the screen telling `report` what becomes
/// of it from then on. Raises Refused.
void viewAndMap(class ScreenSession& session, const Arguments& arguments, const InputRecords& input,
                ImportReport& report);

}  // namespace velk
