// What the runner says of a run in which a server's disk is full, held against what is on the
// server.
#include <doctest/doctest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "tests/support/checks.h"
#include "tests/support/engines.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

namespace fs = std::filesystem;

/// A disk of its own, as small as possible, for the folder that a server puts tables in. Only root
/// can mount one.
class SmallDisk {
 public:
  SmallDisk() {
    const std::string mount =
        "mount -t tmpfs -o size=2m,mode=777 opnimp " + folder() + " 2>/dev/null";
    isThere_ = std::system(mount.c_str()) == 0;
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    // The server may still have files open.
    if (isThere_) CHECK(std::system(("umount -l " + folder()).c_str()) == 0);
  }

  bool isThere() const { return isThere_; }
  std::string folder() const { return folder_.path(""); }
  /// Leaves little room.
  void fill() const {
    const std::string ballast = folder_.path("ballast");
    std::ofstream file(ballast, std::ios::binary);
    const std::string page(4096, 'x');
    while (file << page << std::flush) {
    }
    file.close();
    constexpr std::uintmax_t left = 16 * 1024;
    fs::resize_file(ballast, fs::file_size(ballast) - left);
  }
  void empty() const { fs::remove(folder_.path("ballast")); }

 private:
  TemporaryFolder folder_;
  bool isThere_ = false;
};

/// Puts the tables of customers' debit notes and opening balances there.
void moveTables(const EngineCompany& company, const TestEngine& engine, const SmallDisk& disk) {
  OwnConnection& connection = *company.connection();
  if (std::string_view(engine.name) == "postgresql") {
    // Only its owner's folder does for the server, which is not root.
    const std::string place = disk.folder() + "tables";
    fs::create_directory(place);
    REQUIRE(std::system(("chown nobody " + place).c_str()) == 0);
    connection.Execute("CREATE TABLESPACE small LOCATION '" + place + "'");
    for (const std::string table : {"CustomerDebitNote", "CustomerOpeningBalance"}) {
      connection.Execute("ALTER TABLE " + table + " SET TABLESPACE small");
    }
    return;
  }
  for (const std::string table : {"CustomerDebitNote", "CustomerOpeningBalance"}) {
    const std::string made = toText(connection.Execute("SHOW CREATE TABLE " + table)->field(1));
    connection.Execute("DROP TABLE " + table);
    connection.Execute(made + " DATA DIRECTORY='" + disk.folder() + "'");
  }
}

std::string debitNotes(int count) {
  std::string lines = std::string(openingTitles) + "\r\n";
  for (int i = 1; i <= count; ++i) {
    lines += "C001,A,disk full " + std::to_string(i) + ",03/03/2008,1.00,1.00\r\n";
  }
  return lines;
}

/// While it is still there: a server asks for its files for as long as it knows the tables.
void dropTables(const EngineCompany& company, const TestEngine& engine) {
  for (const std::string table : {"CustomerDebitNote", "CustomerOpeningBalance"}) {
    company.connection()->Execute("DROP TABLE " + table);
  }
  if (std::string_view(engine.name) == "postgresql") {
    company.connection()->Execute("DROP TABLESPACE small");
  }
}

/// Holds what was said of the records against what is there.
void checkTold(const Json& report, const EngineCompany& company, double records) {
  const auto count = [&](const std::string& outcome) {
    return std::stod(report.at("account.outcomes." + outcome + ".count"));
  };
  const double doubtful = count("partial") + count("unknown");
  CHECK(report.at("account.addsUp") == "true");
  CHECK(count("posted") > 0);
  CHECK(doubtful > 0);
  CHECK(count("posted") + doubtful + count("failed") == records);
  // Each record is of 1.00, so that the balance counts the entries.
  for (const char* made :
       {"count(*) FROM CustomerDebitNote", "sum(OpeningBalance) FROM CustomerOpeningBalance"}) {
    const double there = std::stod(company.ask(std::string("SELECT ") + made));
    CHECK(there >= count("posted"));
    CHECK(there <= count("posted") + doubtful);
  }
  CHECK(company.ask("SELECT count(*) - count(DISTINCT DocReference) FROM CustomerDebitNote") ==
        "0");
}

TEST_CASE("disk full: every record has one outcome, and it is true") {
  for (const TestEngine& engine : testEngines()) {
    const std::string name = engine.name;
    if (name != "postgresql" && name != "mariadb") continue;
    CAPTURE(name);
    RunnerWorld world;
    const SmallDisk disk;
    if (!disk.isThere()) {
      std::cerr << "NOT TESTED: a full disk, as this user cannot mount one of his own\n";
      return;
    }
    const EngineCompany company(engine, {});
    moveTables(company, engine, disk);
    disk.fill();
    const auto import = [&](const std::string& file) {
      return world.import(file, {"--json", "--database", company.database()});
    };
    constexpr int records = 400;
    const Ran ran = import(world.folder.write("in.csv", debitNotes(records)));
    CHECK(ran.status == 1);
    checkTold(Json(ran.out), company, records);
    // With room again, the same server goes on.
    disk.empty();
    CHECK(import(world.folder.write("more.csv", crlf({openingTitles, good1}))).status == 0);
    dropTables(company, engine);
  }
}

}  // namespace
}  // namespace velk
