#include "samples/company/sample_company.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <system_error>

#include "base/errors.h"
#include "base/text.h"
#include "base/values.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/utf8_path.h"

namespace velk {
namespace {

namespace fs = std::filesystem;

// The file while it is being filled. It is removed in the end, with the engine's own files beside
// it: what is kept has another name by then.
class UnfinishedDatabase {
 public:
  explicit UnfinishedDatabase(std::string path) : path_(std::move(path)) {
    // The connection string forbids the driver to make a file, but it takes an empty one.
    if (!std::ofstream(toPath(path_))) throw RuntimeError(ErrorNumber::PathFileAccess);
  }
  UnfinishedDatabase(const UnfinishedDatabase&) = delete;
  UnfinishedDatabase& operator=(const UnfinishedDatabase&) = delete;
  ~UnfinishedDatabase() {
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
      std::error_code ignored;
      fs::remove(toPath(path_ + suffix), ignored);
    }
  }

  const std::string& path() const { return path_; }

  /// Gives it its final name, without ever replacing a file.
  void keepAs(const std::string& path) {
    std::error_code error;
    // A link fails if the name is taken; a rename would replace that file.
    fs::create_hard_link(toPath(path_), toPath(path), error);
    if (!error) return;
    // Some file systems know no links.
    if (fs::exists(toPath(path))) throw RuntimeError(ErrorNumber::FileAlreadyOpen);
    fs::rename(toPath(path_), toPath(path), error);
    if (error) throw RuntimeError(ErrorNumber::PathFileAccess);
  }

 private:
  std::string path_;
};

void fill(const std::string& path) {
  const auto connection = openOdbc(embeddedConnectionString(path));
  connection->Execute("BEGIN");
  for (const std::string_view statement : sampleCompanyStatements()) {
    connection->Execute(statement);
  }
  connection->Execute("COMMIT");
  // The mode stays with the file: in it, who reads keeps nobody from writing. Last of all, because
  // in it the file is complete only after the connection's end, whose failures nobody hears of.
  const auto mode = connection->Execute("PRAGMA journal_mode = WAL");
  if (toText(mode->field(0)) != "wal") throw RuntimeError(ErrorNumber::ProviderFailure);
}

// A name that no other run uses, because another may be making the same database just now.
std::string unfinishedName(const std::string& path) {
  std::random_device random;
  const std::uint64_t number = (std::uint64_t{random()} << 32) | random();
  return path + ".new-" + std::to_string(number);
}

void requireFree(const std::string& path) {
  std::error_code error;
  const bool exists = fs::exists(toPath(path), error);
  if (error) throw RuntimeError(ErrorNumber::PathFileAccess);
  if (exists) throw RuntimeError(ErrorNumber::FileAlreadyOpen);
}

}  // namespace

void createSampleCompany(const std::string& path) {
  embeddedConnectionString(path);  // refuses a name before anything is made
  // keepAs() would refuse the name, too, but only after the work.
  requireFree(path);
  UnfinishedDatabase unfinished(unfinishedName(path));
  fill(unfinished.path());
  unfinished.keepAs(path);
}

}  // namespace velk
