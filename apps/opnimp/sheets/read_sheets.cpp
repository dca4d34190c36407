#include "apps/opnimp/sheets/read_sheets.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "apps/opnimp/sheets/sheet_wire.h"
#include "platform/native/confined_work.h"
#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/xls/compound_file.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "platform/spreadsheet/zipped/zipped_workbook.h"

namespace velk {

namespace {

constexpr std::size_t megabyte = std::size_t{1} << 20U;

/// A workbook of 60,000 rows takes a fifth of its share; a small one that takes a second is none,
/// nor is one whose few bytes become many cells.
WorkLimits limitsFor(std::string_view file) {
  constexpr std::size_t longest = 10;
  const std::size_t read = isZipped(file) ? bytesToRead(file) : file.size();
  const std::chrono::seconds computing(std::min(1 + read / megabyte, longest));
  return {512 * megabyte, computing, computing + std::chrono::seconds(read / megabyte + 1),
          std::min(16 * megabyte + 64 * read, 128 * megabyte)};
}

void tell(std::string_view file, const HandBack& handBack) {
  SheetWriter writer(handBack);
  try {
    if (isZipped(file)) {
      readZippedSheets(file, writer);
    } else {
      readXlsSheets(file, writer);
    }
    writer.finish();
  } catch (const RuntimeError& error) {
    writer.refuse(error.description());
  }
}

}  // namespace

bool isWorkbookFile(std::string_view file) {
  return xls::CompoundFile::recognises(file) || isZipped(file);
}

SheetSet readSheets(std::string_view file) {
  using End = WorkResult::End;
  WorkResult result =
      workConfined(limitsFor(file), [&](const HandBack& handBack) { tell(file, handBack); });
  if (result.end == End::NoMemory) damaged("it takes more memory to read than any workbook should");
  if (result.end == End::NoTime) damaged("it takes more time to read than any workbook should");
  if (result.end == End::TooLong) refuse("The workbook has too many cells; split it");
  if (result.end == End::Broken) damaged("reading it broke off");
  return readWire(std::move(result.bytes));
}

}  // namespace velk
