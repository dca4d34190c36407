#include "apps/opnimp/run/run_support.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/records/later_records.h"
#include "apps/opnimp/records/workbook_records.h"
#include "apps/opnimp/run/refusals.h"
#include "apps/opnimp/run/screen_mapping.h"
#include "apps/opnimp/run/screen_session.h"
#include "apps/opnimp/sheets/read_sheets.h"
#include "base/errors.h"
#include "mapping/file_survey.h"
#include "platform/native/native_files.h"
#include "platform/utf8_path.h"
#include "shared/csv_text.h"
#include "shared/numbered_files.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

/// The database's own file and those that the embedded database keeps beside it.
std::vector<std::string> databaseFiles(const std::string& path) {
  if (path.empty()) return {};
  std::error_code error;
  // Links are followed, because the other files lie beside the real one.
  const fs::path followed = fs::weakly_canonical(toPath(path), error);
  const std::string real = error ? path : followed.string();
  return {real, real + "-wal", real + "-shm", real + "-journal"};
}

std::unique_ptr<const InputRecords> fromLine(std::unique_ptr<const InputRecords> whole,
                                             const Arguments& arguments) {
  if (arguments.fromLine == 1) return whole;
  std::size_t first = 0;
  while (first < whole->count() && whole->place(first).line < arguments.fromLine) ++first;
  if (first == 0 && whole->count() > 0) return whole;
  if (first < whole->count()) return std::make_unique<LaterRecords>(std::move(whole), first);
  throw UsageError("--from-line: no record of " + arguments.file + " begins at " +
                   std::string(whole->placeWord()) + " " + grouped(arguments.fromLine) +
                   " or behind it; give a smaller number");
}

/// Whether both paths lead to the same file; also for files that do not exist yet.
bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  // The system knows all links to a file; a file that does not exist yet has only its path.
  if (fs::equivalent(toPath(a), toPath(b), error) && !error) return true;
  // Absolute first: of a file that does not exist yet a relative path would stay relative.
  const fs::path first = fs::weakly_canonical(fs::absolute(toPath(a), error), error);
  if (error) return a == b;
  const fs::path second = fs::weakly_canonical(fs::absolute(toPath(b), error), error);
  return error ? a == b : first == second;
}

bool haveSameFile(const Writes& a, const Writes& b) {
  return std::ranges::any_of(a.paths, [&](const std::string& path) {
    return std::ranges::any_of(b.paths,
                               [&](const std::string& other) { return isSameFile(path, other); });
  });
}

void protect(const std::string& file, const char* what, const Writes& writes) {
  for (const std::string& path : writes.paths) {
    if (!isSameFile(path, file)) continue;
    throw UsageError(std::string(writes.writer) + " would write over " + what +
                     ": choose another name than " + writes.named);
  }
}

/// `length`: of the longest line.
void requireLines(std::size_t length, const std::string& path) {
  if (length <= maxLineLength) return;
  throw CannotOpen("the file " + path + " has a line of more than " +
                   std::to_string(maxLineLength >> 20) +
                   " MB: it is no list of records. Check how it was saved");
}

/// Before a gigabyte of one line is read.
void refuseLongLine(FileSystem& files, const std::string& path) {
  const std::optional<FileSurvey> survey = surveyIfLong(files, path);
  if (survey) requireLines(survey->longestLine, path);
}

std::string readingFailed(const std::string& path, const RuntimeError& error) {
  // Reading raises this error for the length only; memory that runs out is std::bad_alloc.
  const bool tooLong = error.is(ErrorNumber::OutOfMemory);
  return "the file " + path + " could not be read: " +
         (tooLong ? "it is longer than 2 GB; split it"
                  : fileErrorText(path, error) + ". Check the path and its permissions");
}

}  // namespace

std::string applicationFolder(const std::optional<std::string>& option) {
  std::error_code error;
  const fs::path folder = fs::absolute(toPath(option.value_or(".")), error).lexically_normal();
  if (error || !fs::is_directory(folder, error)) {
    throw CannotOpen("there is no folder " + option.value_or(".") +
                     "; make it, or choose another with --app-folder");
  }
  std::string text = folder.string();
  // The root folder becomes empty, which is right: a separator comes before every name in it.
  while (text.ends_with(pathSeparator)) text.pop_back();
  return text;
}

void checkWrites(const std::vector<Writes>& several, const DatabaseChoice& database,
                 const std::string& folder, const std::vector<std::string>& inputs) {
  for (std::size_t i = 0; i < several.size(); ++i) {
    for (const std::string& input : inputs) protect(input, "the file to import", several[i]);
    // Protected even if it does not exist yet, because the run may create it.
    protect(folder + pathSeparator + "Error.log", "the error log", several[i]);
    for (const std::string& file : databaseFiles(database.path)) {
      protect(file, "the database", several[i]);
    }
    for (std::size_t j = 0; j < i; ++j) {
      if (!haveSameFile(several[i], several[j])) continue;
      throw UsageError(std::string(several[i].writer).append(" and ").append(several[j].writer) +
                       " name one file: give each a name of its own");
    }
  }
}

void requireDistinct(const std::vector<std::string>& inputs) {
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (!isSameFile(inputs[i], inputs[j])) continue;
      throw UsageError(inputs[j] + " and " + inputs[i] +
                       " name one file, which would be imported twice");
    }
  }
}

std::unique_ptr<const CsvRecords> convertedRecords(std::string bytes, const Arguments& arguments) {
  Conversion conversion;
  if (!bytes.empty() && !arguments.convert.raw) {
    conversion = (isWorkbookFile(bytes) ? convertWorkbook : convert)(bytes, arguments);
  }
  if (arguments.profile) {
    conversion.assumptions.insert(conversion.assumptions.begin(),
                                  {"profile", *arguments.profile, "given with --profile", ""});
  }
  return std::make_unique<CsvRecords>(std::move(bytes), std::move(conversion));
}

std::string readFile(const std::string& path) {
  NativeFileSystem files;
  try {
    return readBytes(files, path);
  } catch (const RuntimeError& error) {
    throw CannotOpen(readingFailed(path, error));
  }
}

std::string readFile(const std::string& path, const Arguments& arguments) {
  return path == standardStream ? *arguments.piped : readFile(path);
}

void takeStandardInput(Arguments& arguments, const Surroundings& surroundings) {
  if (arguments.file == standardStream && arguments.command != Arguments::Command::Convert) {
    throw UsageError(
        "a file needs a name here; - is standard input to import, preview and convert, and "
        "standard output to convert. A file of that name is ./-");
  }
  if (std::ranges::find(arguments.files, standardStream) == arguments.files.end()) return;
  if (arguments.kind->format == FileFormat::Workbook) {
    throw UsageError("a workbook is not read from standard input: save it, and give its name");
  }
  try {
    arguments.piped = std::make_shared<const std::string>(surroundings.input(maxTextLength));
  } catch (const RuntimeError& error) {
    throw CannotOpen("standard input could not be read: " +
                     (error.is(ErrorNumber::OutOfMemory) ? "it is longer than 2 GB; split it"
                                                         : fileErrorText("/dev/stdin", error)));
  }
}

std::unique_ptr<const InputRecords> readInput(const Arguments& arguments) {
  NativeFileSystem files;
  try {
    if (arguments.kind->format == FileFormat::Workbook) {
      return fromLine(std::make_unique<WorkbookRecords>(readBytes(files, arguments.file),
                                                        arguments.convert.sheet),
                      arguments);
    }
    const bool isOnDisk = arguments.file != standardStream;
    if (arguments.convert.raw && isOnDisk) refuseLongLine(files, arguments.file);
    auto records = convertedRecords(readFile(arguments.file, arguments), arguments);
    requireLines(records->longestLine(), arguments.file);
    return fromLine(std::move(records), arguments);
  } catch (const RuntimeError& error) {
    throw CannotOpen(readingFailed(arguments.file, error));
  }
}

std::string tooLarge(const std::string& path) {
  return "the file " + path +
         " is too large for the memory there is; nothing was imported. Split it";
}

bool isOfSchema(const RuntimeError& error) {
  return error.is(ErrorNumber::NoSuchTable) || error.is(ErrorNumber::CommandErrors);
}

MessageHandler messagesTo(Events& events) {
  return [&events](const Message& message) { events.message(message.prompt); };
}

void viewAndMap(ScreenSession& session, const Arguments& arguments, const InputRecords& input,
                ImportReport& report) {
  session.screen().run().setObserver(&report);
  if (!session.view(arguments.file)) {
    throw Refused(viewRefusalText(report, input, *arguments.kind));
  }
  // The screen shows such a file, but there is nothing in it that could be mapped.
  if (session.screen().lv.columnCount() == 0) {
    throw Refused("the first line of the file is empty; it must hold column titles");
  }
  if (arguments.profile) requireTitles(session.screen(), arguments);
  for (const MapOption& option : arguments.maps) {
    mapByHand(session.screen(), report, mapAsShown(option, input.conversion()));
  }
  requireReadAsMapped(session.screen(), arguments, input.conversion());
}

}  // namespace velk
