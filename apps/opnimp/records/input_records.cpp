#include "apps/opnimp/records/input_records.h"

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/workbook_records.h"
#include "base/errors.h"
#include "shared/csv_text.h"
#include "shared/numbered_files.h"

namespace velk {

std::string InputRecords::where(std::size_t record) const {
  return std::string(placeWord()) + " " + std::to_string(place(record).line);
}

std::unique_ptr<const InputRecords> readRecords(FileSystem& files, std::string_view path,
                                                FileFormat format) {
  if (format == FileFormat::Workbook) return std::make_unique<WorkbookRecords>(files, path);
  return std::make_unique<CsvRecords>(readBytes(files, path));
}

std::string readBytes(FileSystem& files, std::string_view path) {
  const auto file = files.openInput(path);
  if (file->length() > maxTextLength) throw RuntimeError(ErrorNumber::OutOfMemory);
  std::string bytes(static_cast<std::size_t>(file->length()), '\0');
  bytes.resize(file->read(bytes.data(), bytes.size()));
  return bytes;
}

std::string withoutQuotes(std::string field) {
  try {
    field.resize(unquoteInPlace(field.data(), field.size()));
  } catch (const RuntimeError&) {
    field.clear();
  }
  return field;
}

void writeFile(FileSystem& files, std::string_view path, std::string_view bytes) {
  const auto file = files.openReplacement(path);
  file->write(bytes);
  file->close();
}

}  // namespace velk
