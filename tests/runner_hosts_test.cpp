// Several hosts of one database: what is lost with one, and where the run goes on. The servers here
// are made up, so that each moment can be chosen at which one is lost.
#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/run/document_lookup.h"
#include "platform/native/native_privacy.h"
#include "tests/support/fake_database.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

/// A server with two hosts, and what their documents and entries are.
struct HostsWorld : RunnerWorld {
  struct Host {
    std::shared_ptr<FakeConnection> connection;
    bool isThere = true;
  };
  std::map<std::string, Host> hosts;
  std::vector<std::string> effects;  ///< of the calls that post, on the host that is there
  bool canCount = true;
  bool counted = false;             ///< documents were
  int calls = 0;                    ///< that post, so far
  int looks = 0;                    ///< whether a customer is known
  int dies = 0;                     ///< at this call the first host is lost
  int diesLooking = 0;              ///< or at this look-up
  bool after = false;               ///< the call has taken effect by then
  std::size_t lags = 0;             ///< effects that the second host has not
  std::vector<std::string> copies;  ///< notes that were there before the run
  std::string killed;               ///< the journal as it was when the second host was chosen

  HostsWorld() {
    surroundings.hostPatience = std::chrono::seconds(0);
    surroundings.openDatabase = [this](const std::string& string, const OdbcOptions&) {
      const Host& host = hosts.at(string);
      if (!host.isThere) throw RuntimeError(ErrorNumber::ProviderFailure, "nobody is there");
      return host.connection;
    };
    for (const char* name : {"Driver=a", "Driver=b"}) add(name);
  }

  void add(const std::string& name) {
    auto connection = std::make_shared<FakeConnection>();
    connection->database = "company";
    for (const char* start : {"select", "Select", "sp_Check", "Velk_sp_check"}) {
      connection->answerRows(start, {{1}});
    }
    connection->answerRows("Select * From ColorSettings", {});
    connection->answerRows("SELECT TOP 1 OpeningDate FROM Setup", {{dateFromCivil({2008, 4, 1})}});
    connection->onCall = [this, name, host = connection.get()](const FakeCall& call) {
      answer(name, *host, call);
    };
    hosts[name] = {connection};
  }

  void answer(const std::string& name, FakeConnection& host, const FakeCall& call) {
    if (call.text == "opnimp_count_documents") {
      if (!canCount) throw RuntimeError(ErrorNumber::CommandErrors, "there is no such procedure");
      const std::string wanted =
          described(call).substr(call.text.size() + std::size(" 200 ")) + "; 200 ";
      const auto count = std::ranges::count(effects, wanted) + std::ranges::count(copies, wanted);
      host.answerRows(call.text, {{static_cast<std::int32_t>(count)}});
      counted = true;
      return;
    }
    const bool first = name == "Driver=a";
    if (counted && killed.empty()) killed = folder.read("hosts.journal");
    const bool asks = call.text.starts_with("select count(*) from Customer");
    if (!hosts[name].isThere) throw RuntimeError(ErrorNumber::ProviderFailure, "gone");
    if (asks && first && ++looks == diesLooking) lose(name, host);
    if (!call.text.starts_with("sp_insert") && !call.text.starts_with("sp_acc")) return;
    const bool lost = ++calls == dies;
    if (!lost || after) effects.push_back(described(call));
    if (lost) lose(name, host);
  }

  void lose(const std::string& name, FakeConnection& host) {
    hosts[name].isThere = false;
    host.lost = true;
    effects.resize(effects.size() - lags);
    throw RuntimeError(ErrorNumber::ProviderFailure, "gone");
  }

  std::string journal() const { return folder.path("hosts.journal"); }

  Ran importHosts(std::vector<std::string> more = {}) {
    std::vector<std::string> options{"--json",       "--accept",  "all",
                                     "--one-by-one", "--journal", journal()};
    for (const auto& [name, host] : hosts) options.insert(options.end(), {"--database", name});
    options.insert(options.end(), more.begin(), more.end());
    return importLines({openingTitles, "C001,A,R1,,10,10", "C002,A,R2,,20,20", "C003,A,R3,,30,30",
                        "C004,A,R4,,40,40"},
                       options);
  }

  /// Two files of two records each.
  Ran importTwo() {
    std::vector<std::string> call{"import", "customer-opening"};
    call.push_back(
        folder.write("1.csv", crlf({openingTitles, "C001,A,R1,,10,10", "C002,A,R2,,20,20"})));
    call.push_back(
        folder.write("2.csv", crlf({openingTitles, "C003,A,R3,,30,30", "C004,A,R4,,40,40"})));
    call.insert(call.end(), {"--json", "--accept", "all", "--one-by-one", "--journal", journal(),
                             "--database", "Driver=a", "--database", "Driver=b", "--app-folder",
                             folder.path(""), "--rejects", folder.path("r.csv")});
    return run(call);
  }

  /// Of the records, such as "n1 e1 n2".
  std::string there() const {
    std::string text;
    for (const std::string& effect : effects) {
      const bool note = effect.starts_with("sp_insert");
      text.append(text.empty() ? "" : " ").append(note ? "n" : "e");
      text += effect[effect.find("C00") + 3];
    }
    return text;
  }
};

int times(std::string_view text, std::string_view part) {
  int count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != text.npos; at += part.size()) ++count;
  return count;
}

TEST_CASE("hosts: a run goes on at the next one, nothing is lost and nothing is posted twice") {
  struct Case {
    const char* name;
    int dies;
    bool after;
    const char* outcomes;
    const char* there;
    int status;
    int diesLooking = 0;
    bool promoted = false;  // the second host may lack what the first one confirmed
    std::size_t lags = 0;
    bool canCount = true;
    bool ended = true;  // the lost session
  };
  const char* const all = "n1 e1 n2 e2 n3 e3 n4 e4";
  const char* const posted = "posted posted posted posted";
  const Case cases[] = {
      {"before a note", 3, false, posted, all, 0},
      {"behind a note", 3, true, "posted unknown posted posted", "n1 e1 n2 n3 e3 n4 e4", 1},
      {"before an entry", 4, false, "posted unknown posted posted", "n1 e1 n2 n3 e3 n4 e4", 1},
      {"behind an entry", 4, true, "posted unknown posted posted", all, 1},
      {"while looking up", 0, false, posted, all, 0, 3},
      {"the first call", 1, false, posted, all, 0},
      {"the last call", 8, true, "posted posted posted unknown", all, 1},
      {"no look-up", 3, false, "posted unknown posted posted", "n1 e1 n3 e3 n4 e4", 1, 0, false, 0,
       false},
      {"may still be posted", 3, false, "posted unknown posted posted", "n1 e1 n3 e3 n4 e4", 1, 0,
       false, 0, true, false},
      // Behind the last note that is there its entry is in doubt; all behind it is posted again.
      {"lacks three calls", 0, false, "posted unknown posted posted", "n1 e1 n2 n3 e3 n4 e4", 1, 4,
       true, 3},
      {"lacks a record", 0, false, "posted unknown posted posted", all, 1, 4, true, 2},
      {"lacks an entry", 0, false, "posted posted unknown posted", "n1 e1 n2 e2 n3 n4 e4", 1, 4,
       true, 1},
      {"lacks all", 0, false, posted, all, 0, 4, true, 6},
      {"lacks nothing", 0, false, "posted posted unknown posted", all, 1, 4, true},
      {"lacks the confirmed note", 4, false, "unknown posted posted posted", all, 1, 0, true, 1},
      {"has the note in doubt", 3, true, "unknown unknown posted posted", "n1 e1 n2 n3 e3 n4 e4", 1,
       0, true},
      {"may lack, no look-up", 0, false, "unknown unknown unknown not-reached", "n1 e1 n2", 5, 4,
       true, 3, false},
  };
  for (const Case& each : cases) {
    CAPTURE(each.name);
    HostsWorld world;
    world.dies = each.dies;
    world.after = each.after;
    world.diesLooking = each.diesLooking;
    world.lags = each.lags;
    world.canCount = each.canCount;
    world.hosts["Driver=b"].connection->ended = each.ended;
    if (each.promoted) world.hosts["Driver=b"].connection->confirmed = "line 2";
    const Ran ran =
        world.importHosts({"--log-format", "json", "--rejects", world.folder.path("r.csv"),
                           "--metrics", world.folder.path("metrics")});
    CHECK_MESSAGE(ran.status == each.status, (ran.out + ran.err));
    const Json report(ran.out);
    CHECK(report.outcomes() == each.outcomes);
    CHECK(world.there() == each.there);
    CHECK_MESSAGE(report.at("account.addsUp") == "true", ran.out);
    const bool wentOn = each.status != 5;
    if (wentOn) CHECK(report.at("hostChanges[0].to") == "Driver=b");
    CHECK(world.folder.has("r.csv.check.csv") == contains(each.outcomes, "unknown"));
    // What nobody says the end of any more is told, each record once.
    if (wentOn) {
      CHECK_MESSAGE(times(ran.err, R"("outcome":"unknown")") == times(each.outcomes, "unknown"),
                    ran.err);
    }
    const std::string page = world.folder.path("page.html");
    const Json journaled(
        world.run({"report", "1", "--json", "--journal", world.journal(), "--html", page}).out);
    CHECK(journaled.outcomes() == each.outcomes);
    CHECK(journaled.at("hostChanges") == report.at("hostChanges"));
    CHECK(contains(world.folder.read("page.html"), "<dt>Went on</dt>") == wentOn);
    const std::string metrics = world.folder.read("metrics");
    CHECK(metrics[metrics.find("}", metrics.find("\nopnimp_host_changes{")) + 2] ==
          (wentOn ? '1' : '0'));
  }
}

TEST_CASE("hosts: a document that was there before the run is not taken for the run's") {
  HostsWorld all;
  REQUIRE(all.importHosts().status == 0);
  struct Case {
    const char* name;
    std::vector<std::size_t> copies;  // of the notes of these records
    int dies;
    int diesLooking;
    std::size_t lags;
    const char* outcomes;
    const char* there;
    bool again = false;
  };
  const char* const ended = "unknown unknown unknown not-reached";
  const Case cases[] = {
      {"of a confirmed one", {3}, 0, 4, 5, "unknown posted posted posted", "n1 n2 e2 n3 e3 n4 e4"},
      {"of the one in hand",
       {4},
       7,
       0,
       2,
       "posted unknown posted posted",
       "n1 e1 n2 e2 n3 e3 n4 e4"},
      {"of all", {1, 2, 3, 4}, 0, 4, 4, ended, "n1 e1", true},
      {"of none", {}, 0, 4, 6, "posted posted posted posted", "n1 e1 n2 e2 n3 e3 n4 e4", true},
  };
  for (const Case& each : cases) {
    CAPTURE(each.name);
    HostsWorld world;
    for (const std::size_t record : each.copies) {
      world.copies.push_back(all.effects[2 * (record - 1)]);
    }
    world.dies = each.dies;
    world.diesLooking = each.diesLooking;
    world.lags = each.lags;
    world.hosts["Driver=b"].connection->confirmed = "line 2";
    std::vector<std::string> options{"--rejects", world.folder.path("r.csv")};
    if (each.again) options.emplace_back("--again");
    const Ran ran = world.importHosts(options);
    const Json report(ran.out);
    CHECK_MESSAGE(report.outcomes() == each.outcomes, ran.out);
    CHECK(world.there() == each.there);
    const bool broke = each.outcomes == ended;
    CHECK(contains(report.at("brokeOff"), "may lack what the lost one confirmed last") == broke);
  }
}

TEST_CASE("hosts: files of one call, and a server that is lost within one of them") {
  struct Case {
    const char* name;
    int diesLooking;
    std::size_t lags;
    const char* outcomes[2];
    const char* there;
    int status;
    bool promoted = true;
    bool canCount = true;
  };
  const char* const both = "posted posted";
  const char* const all = "n1 e1 n2 e2 n3 e3 n4 e4";
  const Case cases[] = {
      {"in the first", 2, 0, {both, both}, all, 0, false},
      {"the second has all", 4, 0, {both, "unknown posted"}, all, 1},
      {"the second lacks some", 4, 2, {"posted unknown", both}, all, 1},
      {"the first lacks some", 3, 2, {"unknown unknown", both}, "n1 e1 n3 e3 n4 e4", 1},
      {"both lack some", 4, 4, {"unknown unknown", both}, "n1 e1 n3 e3 n4 e4", 1},
      {"no look-up",
       3,
       2,
       {"unknown unknown", "not-reached not-reached"},
       "n1 e1",
       5,
       true,
       false}};
  for (const Case& each : cases) {
    CAPTURE(each.name);
    HostsWorld world;
    world.diesLooking = each.diesLooking;
    world.lags = each.lags;
    world.canCount = each.canCount;
    if (each.promoted) world.hosts["Driver=b"].connection->confirmed = "line 2";
    const Ran ran = world.importTwo();
    CHECK_MESSAGE(ran.status == each.status, ran.err);
    CHECK(world.there() == each.there);
    const Json report(ran.out);
    for (const std::size_t file : {0U, 1U}) {
      const std::string number = std::to_string(file + 1);
      const Json of(report.at("files[" + std::to_string(file) + "]") + "\n");
      CHECK_MESSAGE(of.outcomes() == each.outcomes[file], ran.err);
      CHECK(of.at("account.addsUp") == "true");
      CHECK(world.folder.has("r." + number + ".csv.check.csv") ==
            contains(each.outcomes[file], "unknown"));
      if (each.status == 5 && file == 1) continue;  // none of it was begun
      const Json journaled(
          world.run({"report", number, "--json", "--journal", world.journal()}).out);
      CHECK(journaled.outcomes() == each.outcomes[file]);
    }
  }
}

TEST_CASE("hosts: a run that resumes one at another server says what that may lack") {
  for (const std::string line : {"line 1", "line 2"}) {
    HostsWorld world;
    world.dies = 5;
    world.hosts["Driver=a"].connection->confirmed = "line 1";
    auto second = world.hosts.extract("Driver=b");
    second.mapped().connection->confirmed = line;
    CHECK(world.importHosts().status == 5);
    world.hosts.erase("Driver=a");
    world.hosts.insert(std::move(second));
    const Ran ran = world.importHosts({"--resume", "--rejects", world.folder.path("r.csv")});
    CHECK_MESSAGE(ran.status == 1, (ran.out + ran.err));
    const Json report(ran.out);
    CHECK(report.at("serverReplaced") == (line == "line 1" ? "false" : "true"));
    CHECK(contains(report.at("next"), "may lack what was posted last") == (line == "line 2"));
  }
}

TEST_CASE("hosts: a run that is killed before it begins again has no record posted that is lost") {
  struct Case {
    std::size_t lags;
    const char* outcomes;
  };
  for (const Case& each : {Case{6, "unknown not-reached not-reached not-reached"},
                           {2, "posted unknown not-reached not-reached"},
                           {0, "posted posted unknown not-reached"}}) {
    CAPTURE(each.lags);
    HostsWorld world;
    world.diesLooking = 4;
    world.lags = each.lags;
    world.hosts["Driver=b"].connection->confirmed = "line 2";
    world.importHosts({"--rejects", world.folder.path("r.csv")});
    REQUIRE_FALSE(world.killed.empty());
    const std::string journal = world.folder.write("killed.journal", world.killed);
    const Ran ran = world.run({"report", "1", "--json", "--journal", journal});
    CHECK_MESSAGE(Json(ran.out).outcomes() == each.outcomes, (ran.out + ran.err));
  }
}

TEST_CASE("hosts: those that do not answer share the time of one, and are asked once") {
  HostsWorld world;
  for (const char* name : {"Driver=c", "Driver=d"}) world.add(name);
  for (const char* name : {"Driver=a", "Driver=c"}) world.hosts[name].isThere = false;
  std::string seconds;
  world.surroundings.openDatabase = [&, open = world.surroundings.openDatabase](
                                        const std::string& string, const OdbcOptions& options) {
    seconds += string.back() + std::to_string(options.loginTimeoutSeconds) + " ";
    return open(string, options);
  };
  CHECK(world.importHosts({"--connect-wait", "12"}).status == 0);
  CHECK(seconds == "a3 b4 c6 d12 ");
}

TEST_CASE("hosts: of equal documents each call knows how many were made before it") {
  std::vector<RecordedCall> calls;
  const auto note = [&](double bill, CallResult result) {
    RecordedCall& call = calls.emplace_back();
    call.kind = CallKind::Procedure;
    call.parameters = {"C001", "R1", Date{1}, bill, 0.0, std::to_string(calls.size())};
    call.result = result;
  };
  note(1, CallResult::Ok);
  note(2, CallResult::Ok);
  note(1, CallResult::Failed);
  note(1, CallResult::Ok);
  note(1, CallResult::Unknown);
  std::vector<const RecordedCall*> all;
  pointTo(all, calls);
  CHECK(documentsBefore(all) == std::vector<std::size_t>{0, 0, 1, 1, 2});
}

TEST_CASE("hosts: a run does not go on where it must not") {
  struct Case {
    const char* name;
    void (*change)(HostsWorld&);
    const char* says;
  };
  const Case cases[] = {
      {"no other host", [](HostsWorld& w) { w.hosts.erase("Driver=b"); }, "was lost"},
      {"none is there", [](HostsWorld& w) { w.hosts["Driver=b"].isThere = false; },
       "no host was left"},
      {"a standby still",
       [](HostsWorld& w) { w.hosts["Driver=b"].connection->notReady = "it is a standby"; },
       "it is a standby"},
      {"both at one record",
       [](HostsWorld& w) {
         FakeConnection* const second = w.hosts["Driver=b"].connection.get();
         second->onCall = [&w, second, answer = second->onCall](const FakeCall& call) {
           if (call.text.starts_with("sp_insert")) w.lose("Driver=b", *second);
           answer(call);
         };
         w.add("Driver=c");
       },
       "a second host was lost at the same record"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.name);
    HostsWorld world;
    world.dies = 3;
    each.change(world);
    const Ran ran = world.importHosts();
    CHECK_MESSAGE(ran.status == 5, (ran.out + ran.err));
    const Json report(ran.out);
    CHECK(report.outcomes() == "posted unknown not-reached not-reached");
    CHECK_MESSAGE(contains(report.at("brokeOff"), each.says), report.at("brokeOff"));
    CHECK(report.at("account.addsUp") == "true");
  }
}

TEST_CASE("hosts: what is begun with") {
  struct Case {
    const char* name;
    void (*change)(HostsWorld&);
    int status;
    const char* says;
  };
  const Case cases[] = {
      {"the first is not there", [](HostsWorld& w) { w.hosts["Driver=a"].isThere = false; }, 0,
       "the database Driver=a could not be opened: nobody is there"},
      {"the second is not there", [](HostsWorld& w) { w.hosts["Driver=b"].isThere = false; }, 0,
       "the run goes on without it"},
      {"the first is a standby",
       [](HostsWorld& w) { w.hosts["Driver=a"].connection->notReady = "it is a standby"; }, 0, ""},
      {"none takes changes",
       [](HostsWorld& w) {
         for (auto& [name, host] : w.hosts) host.connection->notReady = "it is a standby";
       },
       4, "Driver=b cannot be used: it is a standby"},
      {"another database",
       [](HostsWorld& w) { w.hosts["Driver=b"].connection->database = "other"; }, 4,
       "the database Driver=b cannot be used: it is another database"},
      {"not to be told",
       [](HostsWorld& w) {
         for (auto& [name, host] : w.hosts) host.connection->database.clear();
       },
       4, "cannot be told"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.name);
    HostsWorld world;
    each.change(world);
    const Ran ran = world.importHosts();
    CHECK_MESSAGE(ran.status == each.status, (ran.out + ran.err));
    CHECK_MESSAGE(contains(ran.err, each.says), ran.err);
    CHECK(world.effects.size() == (each.status == 0 ? 8 : 0));
  }
}

TEST_CASE("hosts: an embedded database has none, a file names one a line") {
  RunnerWorld world;
  const Ran two = world.importLines({openingTitles},
                                    {"--database", world.database(), "--database", "Driver=x"});
  CHECK(two.status == 3);
  CHECK(contains(two.err, "company.db has no further host"));
  HostsWorld hosts;
  struct Case {
    const char* text;
    int status;
    const char* says;
  };
  for (const Case& each : {Case{"\xEF\xBB\xBF"
                                "Driver=a\r\n\r\nDriver=b\n",
                                0, ""},
                           {"Driver=a\nb\n", 4, "holds a line that"},
                           {"\n", 4, "holds no connection string"}}) {
    CAPTURE(each.text);
    hosts.surroundings.database = hosts.folder.write("hosts", each.text);
    makePrivate(hosts.surroundings.database);
    hosts.effects.clear();
    const std::string file = hosts.folder.write("in.csv", crlf({openingTitles, good1}));
    const Ran ran = hosts.run(
        {"import", "customer-opening", file, "--again", "--app-folder", hosts.folder.path("")});
    std::filesystem::remove(hosts.surroundings.database);
    CHECK_MESSAGE(ran.status == each.status, ran.err);
    CHECK(contains(ran.err, each.says));
  }
}

}  // namespace
}  // namespace velk
