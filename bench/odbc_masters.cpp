// Peer: a bare ODBC loop for master data. Each statement is prepared once, its parameters are bound
// once, and a record costs two executions.
//
//   bench_odbc_masters KIND COMPANY FILE FOLDER [kept]
//
// KIND: bank-branch or vendor. "kept" as for bench_odbc_prepared.

#include <fstream>
#include <sstream>
#include <string_view>

#include "bench/bare_odbc.h"
#include "bench/company_copy.h"
#include "bench/measurement.h"

using namespace velk::bench;

namespace {

using Fields = std::vector<std::string>;

// The files have no quotes.
std::vector<Fields> readRecords(const char* path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<Fields> records;
  std::string line;
  std::getline(file, line);  // the titles
  while (std::getline(file, line)) {
    line.pop_back();  // the carriage return
    std::istringstream fields(line);
    Fields& record = records.emplace_back();
    for (std::string field; std::getline(fields, field, ',');) record.push_back(field);
  }
  return records;
}

/// A stored procedure's statement with its parameters: "t" means a text, a digit for a number
/// that is always the same.
class Procedure {
 public:
  /// `beginning` comes before the statement.
  Procedure(BareConnection& connection, const std::string& beginning, const std::string& name,
            std::string_view parameters)
      : statement_(connection.handle()), texts_(parameters.size()), numbers_(parameters.size()) {
    statement_.prepare(beginning + connection.procedure(name));
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      const auto mark = static_cast<SQLUSMALLINT>(i + 1);
      if (parameters[i] == 't') {
        bindText(statement_, mark, texts_[i]);
      } else {
        numbers_[i] = parameters[i] - '0';
        statement_.check(SQLBindParameter(statement_.handle(), mark, SQL_PARAM_INPUT, SQL_C_SLONG,
                                          SQL_INTEGER, 0, 0, &numbers_[i], 0, nullptr));
      }
    }
  }

  Procedure& set(std::size_t parameter, const std::string& text) {
    texts_[parameter].set(text);
    return *this;
  }
  void execute() const { statement_.execute(); }

 private:
  BareStatement statement_;
  std::vector<TextBuffer> texts_;
  std::vector<SQLINTEGER> numbers_;
};

const char* postBranches(BareConnection& connection, const std::string& beginning,
                         const std::vector<Fields>& records) {
  Procedure bank(connection, beginning, "sp_insert_BankMaster", "tt");
  Procedure branch(connection, beginning, "sp_insert_branch", "ttt");
  for (const Fields& r : records) {
    bank.set(0, r[0]).set(1, r[1]).execute();
    branch.set(0, r[2]).set(1, r[3]).set(2, r[0]).execute();
  }
  return "SELECT count(*) FROM BranchMaster";
}

const char* postVendors(BareConnection& connection, const std::string& beginning,
                        const std::vector<Fields>& records) {
  Procedure vendor(connection, beginning, "sp_insert_Vendors", "tttt0000tttt1tt2ttt0tt");
  Procedure account(connection, beginning, "sp_acc_importvendor", "tt");
  for (const Fields& r : records) {
    vendor.set(0, r[0]).set(1, r[1]).set(2, r[4]).set(3, r[2]).set(9, r[3]).set(11, r[0]);
    vendor.set(16, r[7]).set(17, r[8]).set(21, r[9]).execute();
    account.set(0, r[1]).set(1, r[0]).execute();
  }
  return "SELECT count(*) FROM VendorAccount";
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    const bool kept = argc == 6 && argv[5] == std::string_view("kept");
    require(argc == 5 || kept, "usage: bench_odbc_masters KIND COMPANY FILE FOLDER [kept]");
    const CompanyCopy copy(argv[2], argv[4]);
    BareConnection connection(copy.path());
    const std::vector<Fields> records = readRecords(argv[3]);
    const auto post = argv[1] == std::string_view("vendor") ? postVendors : postBranches;
    Stopwatch watch;
    const char* const count = post(connection, kept ? "WITH kept AS (SELECT 1) " : "", records);
    watch.stop();
    BareStatement counted(connection.handle());
    counted.executeDirect(count);
    watch.report(std::stoul(counted.answer()));
  });
}
