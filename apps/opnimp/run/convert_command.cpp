#include "apps/opnimp/run/convert_command.h"

#include <new>
#include <numeric>
#include <string>
#include <vector>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/records/claimed_name.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/records/title_suggestions.h"
#include "apps/opnimp/records/workbook_records.h"
#include "apps/opnimp/report/conversion_report.h"
#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/run/ready_commands.h"
#include "apps/opnimp/run/refusals.h"
#include "apps/opnimp/run/run_support.h"
#include "base/text.h"
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
  const auto write = [&] { records.write(files, arguments.file, all); };
  writing("the file", arguments.file, "its name", [&] { asNewFile(files, arguments.file, write); });
  return file;
}

/// As a screen maps the columns of the new file of its own accord.
std::vector<FieldMapping> mappingOf(const ImportKind& kind,
                                    const std::vector<std::string>& titles) {
  std::vector<FieldMapping> mapping;
  for (const FieldTitle& field : kind.titles) {
    FieldMapping& entry = mapping.emplace_back();
    entry.field = field.title;
    for (std::size_t column = 0; column < titles.size(); ++column) {
      if (!equalsIgnoringCase(trim(titles[column]), field.title)) continue;
      entry.column = column;
      entry.title = titles[column];
    }
  }
  return mapping;
}

/// In columns that nobody knows no date and no amount was read.
void refuseUnmapped(const CsvRecords& records, const ImportKind& kind, Conversion& conversion) {
  const std::vector<std::string> titles = records.titles();
  const std::vector<FieldMapping> mapping = mappingOf(kind, titles);
  const std::string unmapped = unmappedFields(mapping, kind.mandatory);
  if (unmapped.empty()) return;
  conversion.refusal = unmappedText(unmapped);
  const std::vector<TitleSuggestion> suggestions = suggestTitles(mapping, titles);
  for (const TitleSuggestion& suggestion : suggestions) {
    conversion.refusal += "; " + sentenceOf(suggestion);
  }
  if (std::string maps = mapChoice(suggestions); !maps.empty()) {
    conversion.choices.push_back(std::move(maps));
  }
}

ConvertedFile convertFile(const Arguments& arguments, const std::string& path, std::ostream& out) {
  const auto records = convertedRecords(readFile(path, arguments), arguments);
  ConvertedFile file{arguments, records->conversion(), records->count()};
  std::string& refusal = file.conversion.refusal;
  if (records->bytes().empty() && refusal.empty()) refusal = records->refusal(*arguments.kind);
  if (refusal.empty()) refuseUnmapped(*records, *arguments.kind, file.conversion);
  if (!refusal.empty()) {
    file.commands = readyCommands(arguments, file.conversion.choices);
    return file;
  }
  if (arguments.file == standardStream) {
    out << records->bytes();
    return file;
  }
  NativeFileSystem files;
  const auto write = [&] { writeFile(files, arguments.file, records->bytes()); };
  writing("the file", arguments.file, "its name", [&] { asNewFile(files, arguments.file, write); });
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
    // What did not take the file takes no report of it.
    if (isPiped && !streams.out.flush()) return ExitStatus::BrokeOff;
    if (arguments.quiet && file.status() == ExitStatus::Posted) return file.status();
    (arguments.json ? writeConversionJson : writeConversionText)(
        file, isPiped ? streams.err : streams.out);
    return file.status();
  } catch (const std::bad_alloc&) {
    throw CannotOpen(tooLarge(path));
  }
}

}  // namespace velk
