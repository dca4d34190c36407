// What a program that watches runs gets of them: the events of --log-format json and the file of
// --metrics.
#include <doctest/doctest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>

#include "tests/support/json_value.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

/// Of each line of standard error, all of which have to be events, what these members tell.
std::string eventsOf(const Ran& ran) {
  std::string all;
  std::istringstream lines(ran.err);
  for (std::string line; std::getline(lines, line);) {
    CAPTURE(line);
    const Json valid(line + "\n");
    CHECK(std::regex_match(valid.at("time"), std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ)")));
    const auto event = nlohmann::ordered_json::parse(line);
    all += event["event"];
    for (const char* member : {"resumes", "line", "outcome", "status", "records"}) {
      const auto found = event.find(member);
      if (found != event.end() && !found->is_null()) all += " " + found->dump();
    }
    all += "\n";
  }
  return all;
}

TEST_CASE("events: what a program reads of a run, line by line") {
  struct Row {
    const char* fates;  // a look-up and two calls for each record, the date before them, twice
    std::vector<std::string> options;
    int status;
    const char* events;
  };
  const Row rows[] = {
      {"", {}, 0, "begin 4\nend 0 {\"posted\":4}\n"},
      {"", {"--dry-run"}, 0, "begin 4\nend 0 {\"posted\":4}\n"},
      {".....x..d",
       {},
       1,
       "begin 4\nrecord 2 \"partial\"\nrecord 3 \"partial\"\n"
       "end 1 {\"posted\":2,\"partial\":2}\n"},
      {".......X",
       {},
       5,
       "begin 4\nrecord 3 \"unknown\"\nconnection-lost\n"
       "end 5 {\"posted\":1,\"unknown\":1,\"not-reached\":2}\n"},
      {"......t", {}, 5, "begin 4\nbroke-off\nend 5 {\"posted\":1,\"not-reached\":3}\n"},
      {"", {"--map", "Balance=none such"}, 2, "end 2 {}\n"},
      {"", {"--report", "/no such/r.html"}, 4, "failure 4\n"},
      {"", {"--no-such"}, 3, "failure 3\n"},
  };
  RunnerWorld world;
  const std::string file = world.folder.write(
      "say \"so\"\x1B\xFF.csv",
      crlf({openingTitles, good1, good2, good3, "C004,D,R4,03/03/2008,1.00,1.00"}));
  for (const Row& row : rows) {
    CAPTURE(std::string(row.fates));
    world.script(row.fates);
    std::vector<std::string> options{"--log-format",
                                     "json",
                                     "--again",
                                     "--accept",
                                     "all",
                                     "--database",
                                     "Driver=x;Server=y;PWD=s3cret"};
    options.insert(options.end(), row.options.begin(), row.options.end());
    const Ran ran = world.import(file, options);
    CHECK(ran.status == row.status);
    CHECK(eventsOf(ran) == row.events);
    CHECK_FALSE(contains(ran.err, "s3cret"));
    // Of a file that was refused there is no account that could add up.
    CHECK(contains(ran.err, "\"addsUp\":null") == (row.status == 2));
  }
  CHECK(eventsOf(RunnerWorld().importLines({openingTitles, good1, unknownCustomer},
                                           {"--log-format", "json"})) ==
        "begin 2\nrecord 3 \"rejected\"\nmessage\nend 1 {\"posted\":1,\"rejected\":1}\n");
}

using Samples = std::map<std::string, std::string>;

/// What a parser of the format that is none of ours reads of it; of histograms their counts only.
Samples samplesIn(const RunnerWorld& world, const std::string& path) {
  const std::string script = world.folder.write("parse.py", R"(
import sys
try:
    from prometheus_client.openmetrics.parser import text_string_to_metric_families as families
except ImportError:
    sys.exit(77)
for family in families(open(sys.argv[1], newline='', encoding='utf-8').read()):
    for sample in family.samples:
        labels = ','.join(sorted(k + '=' + repr(v) for k, v in sample.labels.items()))
        if not sample.name.endswith(('_bucket', '_sum')):
            print(sample.name + '{' + labels + '}', float(sample.value))
)");
  const std::string read = world.folder.path("read.txt");
  const int status =
      std::system(("/usr/bin/python3 " + script + " '" + path + "' >" + read + " 2>&1").c_str());
  Samples samples;
  if (WEXITSTATUS(status) == 77) {
    std::cerr << "NOT TESTED: there is no parser of OpenMetrics (python3-prometheus-client)\n";
    return samples;
  }
  CHECK_MESSAGE(status == 0, world.folder.read("read.txt"));
  std::istringstream lines(world.folder.read("read.txt"));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t end = line.rfind(' ');
    samples[line.substr(0, end)] = line.substr(end + 1);
  }
  return samples;
}

TEST_CASE("metrics: what a call came to, as a parser of the format reads it") {
  RunnerWorld world;
  const std::string first =
      world.folder.write("a.csv", crlf({openingTitles, good1, unknownCustomer}));
  const std::string second = world.folder.write("b \"\\\n\xFF.csv", crlf({openingTitles, good2}));
  const std::string path = world.folder.path("m.prom");
  const auto samples = [&](std::vector<std::string> args) {
    args.insert(args.end(), {"--metrics", path, "--app-folder", world.folder.path("")});
    world.run(args);
    return samplesIn(world, path);
  };
  Samples found = samples({"import", world.kind, first, second, "--database", world.database()});
  if (found.empty()) return;
  const std::string a = "file='" + first + "'";
  // As Python writes it.
  const std::string b = "file='" + world.folder.path("b \"\\\\\\n\uFFFD.csv") + "'";
  const std::pair<std::string, const char*> expected[] = {
      {"opnimp_exit_status{}", "1.0"},
      {"opnimp_records{" + a + ",outcome='posted'}", "1.0"},
      {"opnimp_records{" + a + ",outcome='rejected'}", "1.0"},
      {"opnimp_records{" + b + ",outcome='posted'}", "1.0"},
      {"opnimp_records{" + b + ",outcome='unknown'}", "0.0"},
      {"opnimp_calls{" + a + ",kind='procedure',result='ok'}", "2.0"},
      {"opnimp_call_duration_seconds_count{" + a + ",kind='procedure'}", "2.0"},
      {"opnimp_account_adds_up{" + a + "}", "1.0"},
      {"opnimp_run{" + b + "}", "2.0"}};
  for (const auto& [name, value] : expected) {
    CHECK(name + " " + found[name] == name + " " + value);
  }
  CHECK(std::stod(found["opnimp_file_size_bytes{" + a + "}"]) ==
        static_cast<double>(std::filesystem::file_size(first)));
  CHECK(contains(world.folder.read("m.prom"), ",le=\"0.0005\"}"));
  // The last call counts, also one that comes to nothing.
  CHECK(samples({"import", world.kind, second, "--database",
                 world.folder.path("none.db")})["opnimp_exit_status{}"] == "4.0");
  CHECK(samples({"import", world.kind, second, "--database", world.database(),
                 "--resume"})["opnimp_exit_status{}"] == "3.0");
}

TEST_CASE("metrics: the file takes the place of none that is needed, and costs no record") {
  RunnerWorld world;
  const auto import = [&](const std::string& path) {
    return world.importLines({openingTitles, good1}, {"--metrics", path});
  };
  CHECK(import(world.folder.path("in.csv")).status == 3);
  CHECK(import(world.database()).status == 3);
  CHECK(import(world.folder.path("no/m.prom")).status == 4);
  CHECK(import(world.folder.path("")).status == 4);
  CHECK(import(world.folder.write("secrets.txt", "Driver=a;PWD=b")).status == 3);
  CHECK(world.folder.read("secrets.txt") == "Driver=a;PWD=b");
  // A name in two spellings, of a file that is not there yet.
  const std::string named = std::filesystem::relative(world.folder.path("both"));
  CHECK(world
            .importLines({openingTitles, good1},
                         {"--metrics", named, "--rejects", world.folder.path("both")})
            .status == 3);
  CHECK(debits(world) == "0");
  std::filesystem::create_directory(world.folder.path("gone"));
  world.surroundings.openDatabase = [&, open = world.surroundings.openDatabase](
                                        const std::string& string, const OdbcOptions& options) {
    std::filesystem::remove(world.folder.path("gone"));
    return open(string, options);
  };
  const Ran ran = import(world.folder.path("gone/m.prom"));
  CHECK(ran.status == 0);
  CHECK(contains(ran.err, "opnimp: the metrics " + world.folder.path("gone/m.prom")));
  CHECK(debits(world) == "1");
}

}  // namespace
}  // namespace velk
