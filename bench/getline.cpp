// Peer: what one writes without a library. Lines by getline, fields into vectors of strings.
//
//   bench_getline FILE

#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/measurement.h"

using namespace velk::bench;

namespace {

using Row = std::vector<std::string>;

// A quoted field: the text between its quotes, doubled ones single. `at` moves past it.
std::string quotedField(std::string_view line, std::size_t& at) {
  std::string field;
  for (++at; at < line.size(); ++at) {
    if (line[at] == '"' && (++at == line.size() || line[at] != '"')) break;
    field += line[at];
  }
  return field;
}

Row splitFields(std::string_view line, std::size_t expected) {
  Row row;
  row.reserve(expected);
  for (std::size_t at = 0; at <= line.size(); ++at) {
    if (at < line.size() && line[at] == '"') {
      row.push_back(quotedField(line, at));
      continue;
    }
    const std::size_t end = std::min(line.find(',', at), line.size());
    row.emplace_back(line.substr(at, end - at));
    at = end;
  }
  return row;
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 2, "usage: bench_getline FILE");
    Stopwatch watch;
    std::ifstream file(argv[1], std::ios::binary);
    std::vector<Row> rows;
    std::size_t cells = 0;
    for (std::string line; std::getline(file, line);) {
      if (line.ends_with('\r')) line.pop_back();
      rows.push_back(splitFields(line, rows.empty() ? 0 : rows.front().size()));
      cells += rows.back().size();
    }
    require(!rows.empty(), "the file can't be read");
    watch.stop();
    watch.report(cells - rows.front().size());
  });
}
