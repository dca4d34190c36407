// Ours: a file of customers' opening balances as another program writes it becomes the one that the
// screens read.
//
//   bench_convert FILE ENCODING     ENCODING as --encoding has it, or auto

#include "apps/opnimp/convert/conversion.h"
#include "bench/cells.h"
#include "bench/measurement.h"

using namespace velk;
using namespace velk::bench;

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 3, "usage: bench_convert FILE ENCODING");
    const std::string bytes = readFile(argv[1]);
    Arguments arguments;
    arguments.kind = findKind("customer-opening");
    if (argv[2] != std::string("auto")) arguments.convert.encoding = argv[2];
    Stopwatch watch;
    const Conversion conversion = convert(bytes, arguments);
    watch.stop();
    require(conversion.bytes.has_value(), conversion.refusal.c_str());
    watch.report(cellsOf(*conversion.bytes, ','));
  });
}
