#include "apps/opnimp/run/file_commands.h"

#include <algorithm>
#include <vector>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/claimed_name.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/report/kinds_report.h"
#include "apps/opnimp/run/run_support.h"
#include "base/text.h"
#include "platform/native/native_files.h"
#include "platform/spreadsheet/xls/xls_sheet_writer.h"

namespace velk {

namespace {

/// A line of the titles or the examples, ended.
template <class Member>
std::string csvLine(const ImportKind& kind, Member member) {
  std::string line;
  for (const FieldTitle& field : columnsOf(kind)) {
    line.append(line.empty() ? "" : ",").append(std::invoke(member, field));
  }
  return line.append(csvLineEnd);
}

/// The columns take texts, so that a spreadsheet program leaves dates and leading zeros as they are
/// typed.
void fillFirstSheet(WorksheetWriter& sheet, const ImportKind& kind) {
  int column = 0;
  for (const FieldTitle& field : columnsOf(kind)) {
    ++column;
    sheet.setText(1, column, field.title);
    sheet.setText(2, column, field.example);
    sheet.setTextColumn(column);
  }
  sheet.setBold({1, 1, 1, column});
  sheet.autoFit(1, column);
}

void fillNotes(WorksheetWriter& sheet, const ImportKind& kind) {
  const auto write = [&](int row, std::initializer_list<std::string_view> texts) {
    int column = 0;
    for (const std::string_view text : texts) sheet.setText(row, ++column, text);
  };
  // Fewer than any kind of record has: it must not pass for a sheet of records.
  constexpr int columns = 3;
  write(1, {"Column", "Every record", "What it may be"});
  int row = 1;
  for (const FieldTitle& field : columnsOf(kind)) {
    const std::string what = std::string(natureName(field.nature)) +
                             (field.what.empty() ? "" : ": ") + std::string(field.what);
    write(++row, {field.title, field.mandatory ? "yes" : "", what});
  }
  sheet.setBold({1, 1, 1, columns});
  sheet.autoFit(1, columns);
}

void writeWorkbookTemplate(FileSystem& files, const std::string& path, const ImportKind& kind) {
  const auto sheet = xls::newXlsSheet(files);
  fillFirstSheet(*sheet, kind);
  fillNotes(sheet->addSheet("Columns"), kind);
  sheet->saveAs(path);
}

bool isWorkbookName(const ImportKind& kind, const std::string& path) {
  const std::string name = lowerAscii(path);
  const bool isXls = name.ends_with(".xls");
  if (kind.format == FileFormat::Workbook && !isXls) {
    throw UsageError("a file of the kind " + std::string(kind.name) +
                     " is a workbook: choose a name that ends in .xls, not " + path);
  }
  if (!isXls && !name.ends_with(".csv")) {
    throw UsageError("choose a name that ends in .csv or .xls, not " + path);
  }
  return isXls;
}

}  // namespace

ExitStatus tellKinds(const Arguments& arguments, const Streams& streams) {
  std::vector<const ImportKind*> kinds = arguments.kinds;
  if (kinds.empty()) {
    for (const ImportKind& kind : importKinds()) kinds.push_back(&kind);
  }
  (arguments.json ? writeKindsJson : writeKindsText)(kinds, streams.out);
  return ExitStatus::Posted;
}

ExitStatus writeTemplate(const Arguments& arguments, const Streams& streams) {
  const ImportKind& kind = *arguments.kind;
  const bool isWorkbook = isWorkbookName(kind, arguments.file);
  requireNoFile(arguments.file);
  NativeFileSystem files;
  const auto write = [&] {
    if (isWorkbook) return writeWorkbookTemplate(files, arguments.file, kind);
    writeFile(files, arguments.file,
              csvLine(kind, &FieldTitle::title) + csvLine(kind, &FieldTitle::example));
  };
  writing("the template", arguments.file, "its name",
          [&] { asNewFile(files, arguments.file, write); });
  streams.out << "Written:   " << printable(arguments.file) << '\n'
              << "Next:      Put your records in the place of the example in line 2.\n";
  return ExitStatus::Posted;
}

}  // namespace velk
