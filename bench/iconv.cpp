// Peer: iconv, which makes one encoding of another and nothing else.
//
//   bench_iconv FILE ENCODING SEPARATOR     from ENCODING to UTF-8

#include <iconv.h>

#include "bench/cells.h"
#include "bench/measurement.h"

using namespace velk::bench;

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 4, "usage: bench_iconv FILE ENCODING SEPARATOR");
    std::string bytes = readFile(argv[1]);
    Stopwatch watch;
    const iconv_t converter = iconv_open("UTF-8", argv[2]);
    std::string text(bytes.size() * 2, '\0');
    char* from = bytes.data();
    char* to = text.data();
    std::size_t fromLength = bytes.size();
    std::size_t toLength = text.size();
    const std::size_t failed = iconv(converter, &from, &fromLength, &to, &toLength);
    watch.stop();
    require(failed != static_cast<std::size_t>(-1), "the file is not in that encoding");
    text.resize(text.size() - toLength);
    watch.report(cellsOf(text, *argv[3]));
    iconv_close(converter);
  });
}
