#include "apps/opnimp/run_support.h"

#include "apps/opnimp/failures.h"
#include "apps/opnimp/field_mapping.h"
#include "apps/opnimp/printable.h"
#include "apps/opnimp/screen_session.h"
#include "platform/errors.h"
#include "platform/native/native_files.h"

namespace velk {

namespace {

std::string viewFailure(const ImportKind& kind, const InputRecords& input,
                        const Recorder& recorder) {
  if (input.bytes().empty()) return "the file is empty; its first line must hold column titles";
  if (input.count() > kind.largestRecordCount) return tooManyRecords(kind, input.count());
  std::string text = "the file could not be viewed";
  if (!recorder.lines().empty()) text += ": " + recorder.lines().back().text;
  return text;
}

}  // namespace

InputRecords readInput(const std::string& path) {
  NativeFileSystem files;
  try {
    return InputRecords(readBytes(files, path));
  } catch (const RuntimeError& error) {
    const bool tooLong = error.is(ErrorNumber::OutOfMemory);
    throw CannotOpen("the file " + path + " could not be read: " +
                     (tooLong ? "it is longer than 2 GB; split it"
                              : error.description() + ". Check the path and its permissions"));
  }
}

std::string tooLarge(const std::string& path) {
  return "the file " + path +
         " is too large for the memory there is; nothing was imported. Split it";
}

std::string tooManyRecords(const ImportKind& kind, std::size_t count) {
  return "the file has " + grouped(count) + " records, but at most " +
         grouped(kind.largestRecordCount) + " can be imported in one go; split the file";
}

// Counted as the record reader does, for which a bare carriage return ends the line, too.
std::string columnsRefusal(const ImportKind& kind, const InputRecords& input) {
  const std::string_view header = input.header();
  const std::size_t columns = countFields(header.substr(0, header.find('\r')));
  if (kind.columns == 0 || columns == kind.columns) return {};
  return "the first line has " + counted(columns, "column", "columns") + "; a file of the kind " +
         std::string(kind.name) + " must have exactly " + std::to_string(kind.columns);
}

MessageHandler messagesTo(std::ostream& err, Progress& progress) {
  return [&err, &progress](const Message& message) {
    progress.erase();
    err << printableLines(message.prompt) << '\n' << std::flush;
  };
}

void viewAndMap(ScreenSession& session, const Arguments& arguments, const InputRecords& input,
                const Recorder& recorder) {
  if (!session.view(arguments.file)) {
    throw Refused(viewFailure(*arguments.kind, input, recorder));
  }
  if (session.screen().lv.columnCount() == 0) {
    throw Refused("the first line of the file is empty; it must hold column titles");
  }
  for (const MapOption& option : arguments.maps) {
    mapByHand(session.screen(), recorder, option);
  }
}

}  // namespace velk
