// Files of other programs: the screens read as many records as were written, and what has been
// converted stays as it is when it is converted again.
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/convert/conversion.h"
#include "apps/opnimp/records/csv_records.h"
#include "base/text.h"
#include "mapping/csv_table.h"
#include "tests/fuzz/convert_input.h"

using namespace velk;

namespace {

std::size_t recordsOnScreens(const std::string& bytes) {
  try {
    const FileTable table =
        readCsvTable(CodePage::windows1252().decode(bytes), [](const RuntimeError&) {});
    return static_cast<std::size_t>(table.rows);
  } catch (const RuntimeError& error) {
    require(error.is(ErrorNumber::OutOfMemory));  // for its many columns
    return CsvRecords(bytes).count();
  }
}

/// What the run knows of the file has its place in it.
void keepRecords(std::string_view fileBytes, const Conversion& conversion, std::size_t records) {
  const CsvRecords kept(std::string(fileBytes), conversion);
  require(kept.count() == records && kept.longestLine() <= kept.bytes().size());
  for (std::size_t record = 0; record < kept.count(); ++record) {
    const RecordPlace place = kept.place(record);
    require(kept.lineAt(place.offset) == place.line);
  }
  require(kept.titles().size() <= kept.header().size() + 1);
}

void convertAgain(const std::string& bytes, const Arguments& arguments) {
  Arguments again;
  again.kind = arguments.kind;
  // What has been decided cannot always be told from the file.
  again.convert.encoding = "windows-1252";
  again.convert.delimiter = ',';
  again.convert.headerLine = 1;
  again.convert.dateOrder = DateOrder::DayMonthYear;
  again.convert.decimal = '.';
  const Conversion second = convert(bytes, again);
  require(!second.bytes || *second.bytes == bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const ConvertInput input = convertInput(data, size);
  try {
    const Conversion conversion = convert(input.bytes, input.arguments);
    require(!conversion.bytes || conversion.refusal.empty());
    if (!conversion.bytes || conversion.bytes->empty()) return 0;
    const std::size_t records = recordsOnScreens(*conversion.bytes);
    require(conversion.lines.empty() ? records == CsvRecords(std::string(input.bytes)).count()
                                     : records + 1 == conversion.lines.size());
    keepRecords(input.bytes, conversion, records);
    convertAgain(*conversion.bytes, input.arguments);
  } catch (const UsageError&) {
    // Of titles in a line that there is not.
  }
  return 0;
}
