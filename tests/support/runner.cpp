#include "tests/support/runner.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <sstream>

#include "platform/odbc/odbc_connection.h"
#include "samples/company/sample_company.h"

namespace velk {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  static std::atomic<unsigned> made{0};
  do {
    folder_ = fs::temp_directory_path() / ("opnimp_test_" + std::to_string(made++));
  } while (!fs::create_directory(folder_));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

std::string TemporaryFolder::path(std::string_view name) const {
  return name.empty() ? folder_.string() : (folder_ / name).string();
}

std::string TemporaryFolder::write(std::string_view name, std::string_view bytes) const {
  std::ofstream(path(name), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return path(name);
}

std::string TemporaryFolder::read(std::string_view name) const {
  std::ifstream file(path(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool TemporaryFolder::has(std::string_view name) const {
  return fs::exists(path(name));
}

RunnerWorld::RunnerWorld() {
  machine.clock = [] { return dateFromCivil({2008, 4, 1}); };
}

Ran RunnerWorld::run(std::vector<std::string> args) {
  std::ostringstream out;
  std::ostringstream err;
  Streams streams{out, err, terminal};
  const int status = runOpnimp(args, streams, machine);
  return {status, out.str(), err.str()};
}

Ran RunnerWorld::import(const std::string& file, std::vector<std::string> more) {
  std::vector<std::string> args{"import", "customer-opening", file, "--app-folder",
                                folder.path("")};
  if (std::ranges::find(more, "--database") == more.end()) {
    args.insert(args.end(), {"--database", database()});
  }
  args.insert(args.end(), more.begin(), more.end());
  return run(std::move(args));
}

Ran RunnerWorld::importLines(std::initializer_list<std::string_view> lines,
                             std::vector<std::string> more) {
  return import(folder.write("in.csv", crlf(lines)), std::move(more));
}

const std::string& RunnerWorld::database() {
  if (database_.empty()) {
    database_ = folder.path("company.db");
    createSampleCompany(database_);
  }
  return database_;
}

std::string RunnerWorld::ask(std::string_view query) {
  const auto connection = openOdbc(embeddedConnectionString(database()));
  return toText(connection->Execute(query)->field(0));
}

std::string samplePath(std::string_view name) {
  return std::string(OPNIMP_SOURCE_DIR "/samples/").append(name);
}

std::string crlf(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (const std::string_view line : lines) text.append(line).append("\r\n");
  return text;
}

}  // namespace velk
