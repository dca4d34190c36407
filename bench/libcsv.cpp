// Peer: libcsv, a small CSV parser in C. The file is read in one go, and every cell is held as a
// string.
//
//   bench_libcsv FILE

#include <csv.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench/measurement.h"

using namespace velk::bench;

namespace {

using Row = std::vector<std::string>;

struct Table {
  std::vector<Row> rows{1};  // the last one is being filled
  std::size_t cells = 0;
};

void addCell(void* cell, std::size_t length, void* to) {
  static_cast<Table*>(to)->rows.back().emplace_back(static_cast<const char*>(cell), length);
}

void endRow(int, void* to) {
  Table& table = *static_cast<Table*>(to);
  const std::size_t width = table.rows.back().size();
  table.cells += width;
  table.rows.emplace_back().reserve(width);
}

struct Bytes {
  std::unique_ptr<char[]> data;
  std::size_t size = 0;
};

Bytes readFile(const char* path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), std::fclose);
  require(file != nullptr, "the file can't be opened");
  std::fseek(file.get(), 0, SEEK_END);
  const auto size = static_cast<std::size_t>(std::ftell(file.get()));
  std::rewind(file.get());
  Bytes bytes{std::unique_ptr<char[]>(new char[size]), size};  // not filled before it is read
  require(std::fread(bytes.data.get(), 1, size, file.get()) == size, "the file can't be read");
  return bytes;
}

Table parse(const char* path) {
  const Bytes bytes = readFile(path);
  Table table;
  csv_parser parser;
  require(csv_init(&parser, 0) == 0, "the parser can't be set up");
  const std::size_t parsed =
      csv_parse(&parser, bytes.data.get(), bytes.size, addCell, endRow, &table);
  csv_fini(&parser, addCell, endRow, &table);
  csv_free(&parser);
  require(parsed == bytes.size, "the file can't be parsed");
  return table;
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 2, "usage: bench_libcsv FILE");
    Stopwatch watch;
    const Table table = parse(argv[1]);
    watch.stop();
    watch.report(table.cells - table.rows.front().size());
  });
}
