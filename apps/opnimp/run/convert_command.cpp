#include "apps/opnimp/run/convert_command.h"

#include <new>
#include <string>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/report/conversion_report.h"
#include "apps/opnimp/run/run_support.h"
#include "platform/native/native_files.h"

namespace velk {

namespace {

ConvertedFile convertFile(const Arguments& arguments, const std::string& path, std::ostream& out) {
  const auto records = convertedRecords(readFile(path, arguments), arguments);
  ConvertedFile file{arguments, records->conversion(), records->count()};
  if (records->bytes().empty() || records->isWorkbook()) {
    file.conversion.refusal = records->refusal(*arguments.kind);
  }
  if (!file.conversion.refusal.empty()) return file;
  if (arguments.file == standardStream) {
    out << records->bytes();
    return file;
  }
  NativeFileSystem files;
  writing("the file", arguments.file, "its name",
          [&] { writeFile(files, arguments.file, records->bytes()); });
  return file;
}

}  // namespace

ExitStatus runConvert(const Arguments& arguments, const Streams& streams) {
  const bool isPiped = arguments.file == standardStream;
  if (!isPiped) requireNoFile(arguments.file);
  const std::string& path = arguments.files.front();
  try {
    const ConvertedFile file = convertFile(arguments, path, streams.out);
    if (arguments.quiet && file.status() == ExitStatus::Posted) return file.status();
    (arguments.json ? writeConversionJson : writeConversionText)(
        file, isPiped ? streams.err : streams.out);
    return file.status();
  } catch (const std::bad_alloc&) {
    throw CannotOpen(tooLarge(path));
  }
}

}  // namespace velk
