#include "tests/support/failing_hosts.h"

#include <cmath>
#include <cstdlib>

#include "tests/support/scratch_database.h"

namespace velk {

namespace {

double entries(OwnConnection& administrator) {
  return std::stod(
      ask(administrator, "SELECT coalesce(sum(OpeningBalance), 0) FROM CustomerOpeningBalance"));
}

/// A power of two: what was entered tells which records were, and how often.
double amountOf(std::size_t record) {
  return std::ldexp(1, static_cast<int>(record % 40));
}

}  // namespace

FailingHosts::FailingHosts(std::string started) : servers(std::move(started)) {
  surroundings.hostPatience = std::chrono::seconds(20);
  surroundings.openDatabase = [this, open = surroundings.openDatabase](const std::string& string,
                                                                       const OdbcOptions& options) {
    return std::make_shared<WatchedConnection>(open(string, options), [this](int ofConnection) {
      if (ofConnection > 0 && before) before(++calls_);
    });
  };
}

void FailingHosts::server(const std::string& command, const std::string& engine,
                          const std::string& more) {
  const std::string line = std::string(OPNIMP_SOURCE_DIR "/scripts/test-servers ")
                               .append(command + " " + servers + " " + engine + " " + more);
  REQUIRE(std::system(line.c_str()) == 0);
}

Json FailingHosts::importChecked(const std::string& name, std::size_t records,
                                 const std::string& administrator) {
  std::string text(openingTitles);
  for (std::size_t i = 0; i < records; ++i) {
    const std::string amount = std::to_string(static_cast<long long>(amountOf(i)));
    text += "\r\nC00" + std::to_string(1 + i % 3) + ",A," + name + std::to_string(i) + ",," +
            amount + "," + amount;
  }
  const double atFirst = entries(*openOdbc(administrator));
  std::vector<std::string> options{"--json", "--accept", "all", "--rejects",
                                   folder.path(name + ".csv")};
  if (oneByOne) options.emplace_back("--one-by-one");
  for (const std::string& host : hosts) options.insert(options.end(), {"--database", host});
  calls_ = 0;
  const Ran ran = import(folder.write(name + ".in.csv", text + "\r\n"), options);
  CHECK_FALSE(contains(ran.out + ran.err, "change-me"));
  const Json report(ran.out);
  CHECK(report.at("account.addsUp") == "true");
  const auto there = openOdbc(administrator);
  double entered = entries(*there) - atFirst;
  for (std::size_t i = records; i-- > 0;) {
    CAPTURE(i);
    const std::string outcome = report.at("records[" + std::to_string(i) + "].outcome");
    const std::string notes =
        velk::ask(*there, "SELECT count(*) FROM CustomerDebitNote WHERE DocReference = '" + name +
                              std::to_string(i) + "'");
    const bool isEntered = entered >= amountOf(i);
    if (isEntered) entered -= amountOf(i);
    if (outcome == "unknown") continue;
    CHECK(notes == (outcome == "posted" ? "1" : "0"));
    CHECK(isEntered == (outcome == "posted"));
  }
  CHECK(entered == 0);
  return report;
}

}  // namespace velk
