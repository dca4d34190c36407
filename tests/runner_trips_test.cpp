// How often a run waits for its server, and what it says when an answer gets lost on the way.
#include <doctest/doctest.h>

#include <array>
#include <map>

#include "tests/support/delaying_proxy.h"
#include "tests/support/engines.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

using namespace std::chrono_literals;

struct TripsWorld : RunnerWorld {
  explicit TripsWorld(const TestEngine& on) : engine(on), company(on, folder.path("")) {}

  const TestEngine& engine;
  EngineCompany company;
  int files = 0;

  static int amount(int record) { return record % 2 == 0 ? record + 1 : -record - 1; }
  /// Records of customers and amounts in turn, none of which was there before.
  std::string records(int count) {
    std::string text = std::string(openingTitles) + "\r\n";
    ++files;
    for (int i = 0; i < count; ++i) {
      const std::string value = std::to_string(amount(i));
      text += "C00" + std::to_string(i % 3 + 1) + ",A,T" + std::to_string(files) + "/" +
              std::to_string(i) + ",," + value + "," + value + "\r\n";
    }
    return folder.write("trips.csv", text);
  }
  Json import(const std::string& database, const std::string& file,
              std::vector<std::string> more = {}) {
    more.insert(more.end(), {"--json", "--accept", "all", "--database", database});
    const Ran ran = RunnerWorld::import(file, more);
    CAPTURE(ran.err);
    return Json(ran.out);
  }
  /// How many notes there are of a record of the last file.
  int notes(int record) const {
    const std::string reference = "T" + std::to_string(files) + "/" + std::to_string(record);
    int count = 0;
    for (const char* table : {"CustomerDebitNote", "CustomerCreditNote"}) {
      count += std::stoi(company.ask(std::string("SELECT count(*) FROM ") + table +
                                     " WHERE DocReference = '" + reference + "'"));
    }
    return count;
  }
  double entries() const {
    return std::stod(
        company.ask("SELECT coalesce(sum(OpeningBalance), 0) FROM CustomerOpeningBalance"));
  }
  int roundTrips(int count, std::chrono::microseconds delay, const std::vector<std::string>& more) {
    DelayingProxy proxy(company.database(), delay);
    const Json report = import(proxy.connectionString(), records(count), more);
    CHECK(report.at("account.outcomes.posted.count") == std::to_string(count));
    return proxy.roundTrips();
  }
  /// Of one record, whatever a run costs before its first and behind its last.
  double roundTripsOfRecord(std::chrono::microseconds delay,
                            const std::vector<std::string>& more = {}) {
    constexpr int few = 16;
    constexpr int many = 80;
    return double(roundTrips(many, delay, more) - roundTrips(few, delay, more)) / (many - few);
  }
};

/// On each server; it is said where engines are chosen that there is none.
template <class Test>
void onEachServer(Test&& test) {
  for (const TestEngine& engine : testEngines()) {
    if (engine.isEmbedded() || std::string_view(engine.name) == "sqlserver") continue;
    CAPTURE(std::string(engine.name));
    TripsWorld world(engine);
    test(world);
  }
}

TEST_CASE("trips: what a record waits for its server") {
  onEachServer([](TripsWorld& world) {
    CHECK(world.roundTripsOfRecord(1ms) <= 1.25);
    // The questions for transactions that were left open are a sixteenth of one.
    CHECK(world.roundTripsOfRecord(0us, {"--one-by-one"}) == doctest::Approx(3.03).epsilon(0.02));
    const auto open = world.surroundings.openDatabase;
    world.surroundings.openDatabase = [open](const std::string& string, OdbcOptions options) {
      options.oneByOne = true;
      return open(string, options);
    };
    const double aheadOnly = world.roundTripsOfRecord(0us);
    CHECK(aheadOnly <= 2.25);
    CHECK(aheadOnly > 2);
  });
}

/// What a run said of its records when an answer was lost, held against what is on the server.
struct TripsTruth {
  std::string reason;  ///< of the record in doubt
  double entered = 0;  ///< by the records that are posted
};

TripsTruth truthOf(const Json& report, TripsWorld& world, int count) {
  TripsTruth truth;
  for (int record = 0; record < count; ++record) {
    const std::string path = "records[" + std::to_string(record) + "].";
    const std::string outcome = report.at(path + "outcome");
    const int notes = world.notes(record);
    if (outcome == "posted") {
      CHECK(notes == 1);
      truth.entered += TripsWorld::amount(record);
    } else if (outcome == "not-reached") {
      CHECK(notes == 0);
    } else {
      CHECK(outcome == "unknown");
      truth.reason = report.at(path + "reason");
    }
  }
  return truth;
}

TEST_CASE("trips: of a record whose answer is lost only what is known is said") {
  onEachServer([](TripsWorld& world) {
    constexpr int count = 3;
    const int all = world.roundTrips(count, 0us, {});
    int lostEntries = 0;
    for (int fromEnd = 0; fromEnd < 11; ++fromEnd) {
      CAPTURE(fromEnd);
      DelayingProxy proxy(world.company.database());
      proxy.losesAnswer = [&](int roundTrip) { return roundTrip == all - fromEnd; };
      const double before = world.entries();
      const std::string file = world.records(count);
      const Json report = world.import(proxy.connectionString(), file);
      CAPTURE(report.outcomes());
      CHECK(report.at("account.addsUp") == "true");
      const TripsTruth truth = truthOf(report, world, count);
      // What may have taken effect is told, and both calls are where both did.
      CHECK((truth.reason == "" || contains(truth.reason, "itNote had no answer")));
      if (world.entries() - before != doctest::Approx(truth.entered)) {
        ++lostEntries;
        CHECK(contains(truth.reason, "customeropeningbalance had no answer"));
      }
      if (!contains(report.outcomes(), "not-reached")) continue;
      world.import(world.company.database(), file,
                   {"--resume", "--rejects", world.folder.path(std::to_string(fromEnd))});
      for (int record = 0; record < count; ++record) CHECK(world.notes(record) <= 1);
    }
    CHECK(lostEntries >= 2);
  });
}

/// A trigger behind each debit note that adds a customer, and what takes a second connection away
/// and gives it back, and the right to make a procedure of the session's own.
const std::map<std::string, std::array<std::string, 4>> changes{
    {"postgresql",
     {"CREATE FUNCTION add_customer() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN INSERT INTO "
      "Customer (CustomerID, CustomerName) VALUES ('C777', 'A') ON CONFLICT DO NOTHING; RETURN NEW;"
      " END $$; CREATE TRIGGER add_customer AFTER INSERT ON CustomerDebitNote FOR EACH ROW EXECUTE "
      "FUNCTION add_customer()",
      "ALTER ROLE opnimp_import CONNECTION LIMIT 1", "ALTER ROLE opnimp_import CONNECTION LIMIT -1",
      "REVOKE TEMPORARY ON DATABASE company FROM PUBLIC"}},
    {"mariadb",
     {"CREATE TRIGGER add_customer AFTER INSERT ON CustomerDebitNote FOR EACH ROW INSERT IGNORE "
      "INTO Customer (CustomerID, CustomerName) VALUES ('C777', 'A')",
      "ALTER USER opnimp_import WITH MAX_USER_CONNECTIONS 1",
      "ALTER USER opnimp_import WITH MAX_USER_CONNECTIONS 0", "SELECT 0"}}};

TEST_CASE("trips: what is asked ahead or sent together changes nothing else") {
  // Nothing of a text becomes a part of a statement.
  const std::string_view lines[] = {openingTitles,
                                    good1,
                                    "C777,A,made by the note before,,1,1",
                                    "C999,A,,,1,1",
                                    "O'B,A,,,1,1",
                                    "C001,A,x'); DROP TABLE Customer; --,,2,2",
                                    "C001,A,$pair$; END; ?,,-3,-3",
                                    "C001,A,\\' opnimp 1,,0.5,0.25"};
  std::string text;
  for (const std::string_view line : lines) text.append(line).append("\r\n");
  onEachServer([&](TripsWorld& world) {
    const auto& [addCustomer, takeConnection, giveConnection, takeRight] =
        changes.at(world.engine.name);
    OwnConnection& owner = *world.company.connection();
    owner.Execute(addCustomer);
    const std::string file = world.folder.write("same.csv", text);
    const auto import = [&](const std::vector<std::string>& more) {
      for (const char* table : {"CustomerDebitNote", "CustomerOpeningBalance"}) {
        owner.Execute(std::string("DELETE FROM ") + table);
      }
      owner.Execute("DELETE FROM Customer WHERE CustomerID = 'C777'");
      std::vector<std::string> options{"--again"};
      options.insert(options.end(), more.begin(), more.end());
      const Json report = world.import(world.company.database(), file, options);
      CHECK(report.outcomes() == "posted posted rejected rejected posted posted posted");
      CHECK(velk::ask(owner,
                      "SELECT count(*) FROM CustomerDebitNote WHERE DocReference IN "
                      "('x''); DROP TABLE Customer; --', 'made by the note before')") == "2");
      return report.at("noLookAhead");
    };
    CHECK(import({"--one-by-one"}) == "null");
    CHECK(import({}) == "null");
    owner.Execute(takeConnection);
    CHECK(contains(import({}), "could not be opened"));
    owner.Execute(giveConnection);
    owner.Execute(takeRight);
    CHECK(import({}) == "null");
  });
}

}  // namespace
}  // namespace velk
