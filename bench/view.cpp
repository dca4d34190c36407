// Ours: a click on View. It reads, splits and unquotes the file, fills the preview and maps the
// columns that it knows by name.
//
//   bench_view FILE FOLDER     FOLDER takes the error log

#include "bench/headless_screen.h"
#include "bench/measurement.h"

using namespace velk;
using namespace velk::bench;

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 3, "usage: bench_view FILE FOLDER");
    HeadlessScreen screen(argv[2], nullptr,
                          [](const Message& m) { std::cerr << m.prompt << '\n'; });
    screen.browse(argv[1]);
    ImportScreen& form = screen.form();
    Stopwatch watch;
    form.cmdview.userClick();
    watch.stop();
    watch.report(form.lv.rowCount() * form.lv.columnCount());

    // A file beyond the range of the record count is shown, but refused before it is mapped.
    const bool mapped = form.mappingList.isBold(ImportScreen::mappingRow, 0);
    require(mapped == (form.lv.rowCount() < 32768), "the file was not mapped as it has to be");
  });
}
