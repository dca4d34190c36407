// Ours: the workbook that an export writes, with its bold captions, pick lists, hidden columns and
// fitted widths.
//
//   bench_xls_write FILE.csv FILE.xls

#include <sstream>
#include <string_view>
#include <vector>

#include "bench/measurement.h"
#include "platform/native/native_files.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"

using namespace velk;
using namespace velk::bench;

namespace {

struct Line {
  std::string text;
  std::vector<std::string_view> fields;
};

std::vector<Line> readLines(const char* path) {
  std::vector<Line> lines;
  std::ifstream in(path);
  for (std::string text; std::getline(in, text);) lines.push_back({std::move(text), {}});
  for (Line& line : lines) {
    std::string_view left = line.text;
    while (!left.empty()) {
      line.fields.push_back(left.substr(0, left.find(',')));
      left.remove_prefix(std::min(left.size(), line.fields.back().size() + 1));
    }
  }
  return lines;
}

void addList(WorksheetWriter& sheet, int target, int source,
             std::initializer_list<const char*> values) {
  int row = 1;
  sheet.setText(row, source, "DSType");
  for (const char* const value : values) sheet.setText(++row, source, value);
  sheet.addListValidation({2, target, 1000, target}, {2, source, row, source});
  sheet.setColumnWidth(target, 30);
  sheet.hideColumn(source);
}

std::size_t write(const std::vector<Line>& lines, const char* path) {
  NativeFileSystem files;
  XlsSpreadsheet application(files);
  const auto sheet = application.add();
  addList(*sheet, 6, 250, {"Van Sales", "Ready Stock", "Order Booking"});
  addList(*sheet, 7, 251, {"YES", "NO"});
  std::size_t cells = 0;
  int row = 0;
  for (const Line& line : lines) {
    ++row;
    int column = 0;
    for (const std::string_view field : line.fields) sheet->setText(row, ++column, field);
    cells += line.fields.size();
  }
  sheet->setBold({1, 1, 1, 8});
  sheet->autoFit(1, 5);
  sheet->saveAs(path);
  return cells;
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 3, "usage: bench_xls_write FILE.csv FILE.xls");
    const std::vector<Line> lines = readLines(argv[1]);
    Stopwatch watch;
    const std::size_t cells = write(lines, argv[2]);
    watch.stop();
    watch.report(cells);
  });
}
