#include "apps/opnimp/records/read_records.h"

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/records/workbook_records.h"

namespace velk {

std::unique_ptr<const InputRecords> readRecords(FileSystem& files, std::string_view path,
                                                FileFormat format) {
  if (format == FileFormat::Workbook) return std::make_unique<WorkbookRecords>(files, path);
  return std::make_unique<CsvRecords>(readBytes(files, path));
}

}  // namespace velk
