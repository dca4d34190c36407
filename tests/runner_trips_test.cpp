// How often a run waits for its server, and what it says when an answer gets lost on the way.
#include <doctest/doctest.h>

#include <map>

#include "tests/support/database_calls.h"
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

  /// Records of customers and amounts in turn, none of which was there before.
  std::string records(int count) {
    std::string text = std::string(openingTitles) + "\r\n";
    ++files;
    for (int i = 0; i < count; ++i) {
      const std::string amount = std::to_string(i % 2 == 0 ? i + 1 : -i - 1);
      text += "C00" + std::to_string(i % 3 + 1) + ",A,T" + std::to_string(files) + "/" +
              std::to_string(i) + ",," + amount + "," + amount + "\r\n";
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
    constexpr int many = 144;
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
    // Two of the questions behind each 32 calls are those for transactions that were left open.
    CHECK(world.roundTripsOfRecord(0us, {"--one-by-one"}) == doctest::Approx(3).epsilon(0.03));
    const auto open = world.surroundings.openDatabase;
    world.surroundings.openDatabase = [open](const std::string& string, OdbcOptions options) {
      options.oneByOne = true;
      return open(string, options);
    };
    CHECK(world.roundTripsOfRecord(0us) <= 2.25);
    CHECK(world.roundTripsOfRecord(0us) > 2);
  });
}

}  // namespace
}  // namespace velk
