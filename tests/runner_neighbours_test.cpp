// Programs that run at the same time and share a file: each works, or is refused with a sentence
// that says what to do; nothing is lost and nothing posted twice.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

#include "samples/company/sample_company.h"
#include "tests/support/checks.h"
#include "tests/support/program.h"

namespace velk {
namespace {

constexpr std::size_t runners = 3;
constexpr int recordsEach = 60;

std::string reference(std::size_t runner, int record) {
  return "N" + std::to_string(runner) + "-" + std::to_string(record) + "-";
}

/// Customers that the sample company has, and after each one that it has not.
std::string fileOf(std::size_t runner) {
  std::string text = std::string(openingTitles) + "\r\n";
  for (int record = 0; record < recordsEach; ++record) {
    const std::string name = reference(runner, record);
    text += "C001,A," + name + ",03/03/2008,5,5\r\nX" + name + ",B,,03/03/2008,5,5\r\n";
  }
  return text;
}

int countOf(std::string_view text, std::string_view part) {
  int found = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string_view::npos; ++at) ++found;
  return found;
}

/// The option whose path all runners share, and the status and advice of one that another keeps
/// from it. The other paths are each runner's own.
struct Sharing {
  std::string option;
  std::map<int, std::string> refusals;
};

/// What a runner found; its folders are the parent of each path.
struct Neighbour {
  Ran ran;
  std::string database, log, rejects;
};

/// They start together.
std::vector<Neighbour> runTogether(const Sharing& sharing, const TemporaryFolder& common,
                                   const std::vector<TemporaryFolder>& own) {
  std::vector<Neighbour> all(runners);
  std::vector<std::thread> threads;
  for (std::size_t runner = 0; runner < runners; ++runner) {
    const auto path = [&, runner](const std::string& option) {
      return (option == sharing.option ? common : own[runner]).path(option.substr(2));
    };
    Neighbour& one = all[runner];
    one = {{}, path("--database"), path("--app-folder") + "/Error.log", path("--rejects")};
    std::vector<std::string> args{"import", "customer-opening",
                                  own[runner].write("in.csv", fileOf(runner))};
    for (const char* option : {"--app-folder", "--database", "--journal", "--rejects"}) {
      args.insert(args.end(), {option, path(option)});
    }
    threads.emplace_back(
        [&one, &folder = own[runner], args] { one.ran = runProgram(folder, args); });
  }
  for (std::thread& thread : threads) thread.join();
  return all;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Each of the runner's good records is in the database once, each bad one a line of the log and of
/// the rejects; or none is anywhere, when it was refused before it began.
void checkOne(const Sharing& sharing, std::size_t runner, const Neighbour& one) {
  CAPTURE(runner);
  CAPTURE(one.ran.err);
  const bool isKept = one.ran.status != 1;
  if (isKept) {
    REQUIRE(sharing.refusals.contains(one.ran.status));
    CHECK(contains(one.ran.out + one.ran.err, sharing.refusals.at(one.ran.status)));
  }
  const auto database = openOdbc(embeddedConnectionString(one.database));
  const std::string log = contentOf(one.log);
  const std::string rejects = contentOf(one.rejects);
  const bool runs = !isKept || one.ran.status == 5;
  for (int record = 0; record < recordsEach; ++record) {
    const std::string name = reference(runner, record);
    CHECK(ask(*database, "select count(*) from CustomerDebitNote where DocReference = '" + name +
                             "'") == (runs ? "1" : "0"));
    CHECK(countOf(log, "X" + name + "\r\n") == (runs ? 1 : 0));
    CHECK(countOf(rejects, "\r\nX" + name + ",") == (isKept ? 0 : 1));
  }
}

TEST_CASE("programs that share a file at the same time") {
  const Sharing rows[] = {
      {"--app-folder", {}},
      {"--database", {}},
      {"--journal", {{4, "wait until that run ends, or choose another with --journal"}}},
      {"--rejects",
       {{3, "choose another name"}, {5, "`opnimp rejects` writes it under another one"}}}};
  for (const Sharing& sharing : rows) {
    CAPTURE(sharing.option);
    const TemporaryFolder common;
    const std::vector<TemporaryFolder> own(runners);
    for (const TemporaryFolder* folder : {&common, &own[0], &own[1], &own[2]}) {
      createSampleCompany(folder->path("database"));
      std::filesystem::create_directory(folder->path("app-folder"));
    }
    const auto all = runTogether(sharing, common, own);
    for (std::size_t runner = 0; runner < runners; ++runner) {
      checkOne(sharing, runner, all[runner]);
    }
    CHECK(std::ranges::any_of(all, [](const Neighbour& one) { return one.ran.status == 1; }));
    if (sharing.option == "--app-folder") {
      CHECK(countOf(contentOf(all[0].log), "\n") == static_cast<int>(runners) * recordsEach);
    }
  }
}

}  // namespace
}  // namespace velk
