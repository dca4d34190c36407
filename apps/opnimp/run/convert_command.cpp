#include "apps/opnimp/run/convert_command.h"

#include <new>
#include <numeric>
#include <string>
#include <vector>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/records/workbook_records.h"
#include "apps/opnimp/report/conversion_report.h"
#include "apps/opnimp/run/ready_commands.h"
#include "apps/opnimp/run/run_support.h"
#include "platform/native/native_files.h"

namespace velk {

namespace {

/// Of salesmen the screens read workbooks only.
ConvertedFile convertSalesmen(const Arguments& arguments, const std::string& path,
                              std::ostream& /*out*/) {
  if (arguments.file == standardStream) {
    throw UsageError("a workbook is not written to standard output: give it a name");
  }
  const WorkbookRecords records(readFile(path), arguments.convert.sheet);
  ConvertedFile file{arguments, {}, records.count()};
  file.conversion.refusal = records.refusal(*arguments.kind);
  if (!file.conversion.refusal.empty()) return file;
  std::vector<std::size_t> all(records.count());
  std::iota(all.begin(), all.end(), std::size_t{0});
  NativeFileSystem files;
  writing("the file", arguments.file, "its name",
          [&] { records.write(files, arguments.file, all); });
  return file;
}

ConvertedFile convertFile(const Arguments& arguments, const std::string& path, std::ostream& out) {
  const auto records = convertedRecords(readFile(path, arguments), arguments);
  ConvertedFile file{arguments, records->conversion(), records->count()};
  std::string& refusal = file.conversion.refusal;
  if (records->bytes().empty() && refusal.empty()) refusal = records->refusal(*arguments.kind);
  if (!refusal.empty()) {
    file.commands = readyCommands(arguments, file.conversion.choices);
    return file;
  }
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
    const bool isText = arguments.kind->format == FileFormat::CommaSeparated;
    const ConvertedFile file =
        (isText ? convertFile : convertSalesmen)(arguments, path, streams.out);
    if (arguments.quiet && file.status() == ExitStatus::Posted) return file.status();
    (arguments.json ? writeConversionJson : writeConversionText)(
        file, isPiped ? streams.err : streams.out);
    return file.status();
  } catch (const std::bad_alloc&) {
    throw CannotOpen(tooLarge(path));
  }
}

}  // namespace velk
