#include "tests/support/runner.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <sstream>
#include <thread>
#include <utility>

#include "samples/company/sample_company.h"
#include "tests/support/fake_database.h"

namespace velk {

RunnerWorld::RunnerWorld() {
  surroundings.database.clear();  // whatever the machine has
  surroundings.clock = [] { return dateFromCivil({2008, 4, 1}); };
  surroundings.stateFolder = folder.path("state");
  surroundings.settingsFolder = folder.path("settings");
  surroundings.machineStart = "this one";  // Wine does not count them
}

Ran RunnerWorld::run(std::vector<std::string> args) {
  std::ostringstream out;
  std::ostringstream err;
  Streams streams{out, err, terminal};
  const int status = runOpnimp(args, streams, surroundings);
  return {status, out.str(), err.str()};
}

Ran RunnerWorld::import(const std::string& file, std::vector<std::string> more) {
  std::vector<std::string> args{"import", kind, file, "--app-folder", folder.path("")};
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

void RunnerWorld::script(std::string_view fates) {
  const auto scripted = std::make_shared<FakeConnection>();
  FakeConnection& connection = *scripted;
  connection.said = {{"HY000", 7, "first"}, {"01000", 0, "second"}};
  for (const char* start : {"select", "Select", "sp_Check", "Velk_sp_check"}) {
    connection.answerRows(start, {{1}});
  }
  connection.answerRows("Select * From ColorSettings", {});
  connection.answerRows("SELECT TOP 1 OpeningDate FROM Setup", {{dateFromCivil({2008, 4, 1})}});
  connection.onCall = [&connection, fates = std::string(fates)](const FakeCall&) {
    const std::size_t at = connection.calls.size() - 1;
    const char fate = at < fates.size() ? fates[at] : ' ';
    const RuntimeError refused(ErrorNumber::IntegrityViolation, "refused");
    connection.lost = fate == 'X' || fate == 'L';
    connection.nothingChanged = fate == 'x';
    connection.nextError.reset();
    if (fate == 'x' || fate == 'd' || fate == 'X') throw RuntimeError(refused);
    if (fate == 't') throw RuntimeError(ErrorNumber::ProviderTimeout);
    if (fate == 'h') std::this_thread::sleep_for(std::chrono::hours(1));
    if (fate == 'm') throw std::bad_alloc();
    if (fate == 'l' || fate == 'L') connection.nextError = refused;
  };
  const auto isOpen = std::make_shared<bool>(false);
  surroundings.openDatabase = [scripted, isOpen](const std::string&, const OdbcOptions& options) {
    // The script is of one connection.
    if (options.readOnly && std::exchange(*isOpen, false)) {
      throw RuntimeError(ErrorNumber::ProviderFailure, "no second connection");
    }
    *isOpen = !options.readOnly;
    return scripted;
  };
}

const std::string& RunnerWorld::database() {
  if (database_.empty()) {
    database_ = folder.path("company.db");
    createSampleCompany(database_);
  }
  return database_;
}

std::string RunnerWorld::ask(std::string_view query) {
  return velk::ask(*openOdbc(embeddedConnectionString(database())), query);
}

std::string debits(RunnerWorld& world) {
  return world.ask("select count(*) from CustomerDebitNote");
}

std::string crlf(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (const std::string_view line : lines) text.append(line).append("\r\n");
  return text;
}

}  // namespace velk
