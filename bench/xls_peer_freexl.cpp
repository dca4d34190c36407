// Peer: freexl, a small reader of .xls in C.
//
//   bench_freexl FILE.xls

#include <freexl.h>

#include <cstring>

#include "bench/measurement.h"

using namespace velk::bench;

namespace {

std::size_t read(const char* path) {
  constexpr unsigned short columns = 7;
  const void* workbook = nullptr;
  require(freexl_open(path, &workbook) == FREEXL_OK, "the file can't be opened");
  require(freexl_select_active_worksheet(workbook, 0) == FREEXL_OK, "there is no sheet");
  unsigned rows = 0;
  unsigned short width = 0;
  freexl_worksheet_dimensions(workbook, &rows, &width);
  std::size_t bytes = 0;
  for (unsigned row = 0; row < rows; ++row) {
    for (unsigned short column = 0; column < columns; ++column) {
      FreeXL_CellValue cell;
      require(freexl_get_cell_value(workbook, row, column, &cell) == FREEXL_OK, "no cell");
      const bool isText = cell.type == FREEXL_CELL_TEXT || cell.type == FREEXL_CELL_SST_TEXT;
      if (isText) bytes += std::strlen(cell.value.text_value);
    }
  }
  freexl_close(workbook);
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 2, "usage: bench_freexl FILE.xls");
    Stopwatch watch;
    const std::size_t bytes = read(argv[1]);
    watch.stop();
    watch.report(bytes);
  });
}
