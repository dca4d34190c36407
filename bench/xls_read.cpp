// Ours: opening a workbook and taking the text of each cell of seven columns.
//
//   bench_xls_read FILE.xls

#include "bench/measurement.h"
#include "platform/native/native_files.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"

using namespace velk;
using namespace velk::bench;

namespace {

std::size_t read(const char* path) {
  constexpr int columns = 7;
  NativeFileSystem files;
  const auto sheet = XlsSpreadsheet(files).open(path, ColumnSet().set());
  const int rows = sheet->rowCount();
  std::size_t bytes = 0;
  for (int row = 1; row <= rows; ++row) {
    for (int column = 1; column <= columns; ++column) bytes += sheet->text(row, column).size();
  }
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 2, "usage: bench_xls_read FILE.xls");
    Stopwatch watch;
    const std::size_t bytes = read(argv[1]);
    watch.stop();
    watch.report(bytes);
  });
}
