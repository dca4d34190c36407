#include "tests/support/truth.h"

#include <algorithm>
#include <sstream>

#include "tests/support/runner.h"

namespace velk {

Texts linesOf(const std::string& text) {
  Texts lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::size_t Truth::changes(std::size_t record) const {
  const std::string key = " " + records_[record].substr(0, records_[record].find_first_of(",|"));
  const Texts lines = linesOf(folder_.read("ledger"));
  return static_cast<std::size_t>(
      std::ranges::count_if(lines, [&](const std::string& line) { return contains(line, key); }));
}

void Truth::check(const Json& report) const {
  const std::string end = rejects_.substr(rejects_.rfind('.'));
  for (const std::string& part :
       {std::string(), std::string(".reasons.csv"), ".check" + end, ".rest" + end}) {
    CAPTURE(part);
    const std::string path = folder_.path(rejects_ + part);
    CHECK(folder_.has(rejects_ + part) == contains(report.at("rejectFiles"), path + "\""));
  }
  checkLog(report);
  if (report.at("account") == "null") return;
  CHECK(report.at("account.addsUp") == "true");
  // A run that goes on with another one has the last of them.
  const std::size_t count = nlohmann::json::parse(report.at("records")).size();
  for (std::size_t i = 0; i < count; ++i) checkRecord(report, i, records_.size() - count + i);
}

void Truth::checkRecord(const Json& report, std::size_t position, std::size_t record) const {
  const std::string at = "records[" + std::to_string(position) + "].";
  const std::string outcome = report.at(at + "outcome");
  CAPTURE(record);
  CAPTURE(outcome);
  const bool isDry = report.at("dryRun") == "true";
  const bool refused = outcome == "failed" || outcome == "rejected";
  const bool notReached = outcome == "not-reached";
  const bool doubtful = outcome == "partial" || outcome == "unknown";
  if (outcome == "posted") CHECK(changes(record) == (isDry ? 0 : 2));
  if (refused || notReached || outcome == "taken-back") CHECK(changes(record) == 0);
  if (outcome == "rejected") CHECK(report.at(at + "log") != "[]");
  if (doubtful) CHECK_FALSE(contains(report.at("next"), "import the file again"));
  if (isDry || !rejects_.ends_with(".csv")) return;
  const auto isIn = [&](const std::string& part, bool expected) {
    const std::string name = rejects_ + part;
    if (!folder_.has(name)) return;
    CHECK(contains(folder_.read(name), records_[record] + "\r\n") == expected);
  };
  isIn("", refused);
  isIn(".check.csv", doubtful);
  isIn(".rest.csv", notReached);
}

/// Each line is in the file once that is said to be there.
void Truth::checkLog(const Json& report) const {
  Texts kept;
  bool allKept = report.at("dryRun") == "false";
  const auto add = [&](const nlohmann::json& lines) {
    for (const auto& line : lines) {
      allKept = allKept && line.at("kept") == "file";
      if (line.at("kept") == "file") kept.push_back(line.at("text").get<std::string>() + "\r");
    }
  };
  add(nlohmann::json::parse(report.at("log")));
  for (const auto& record : nlohmann::json::parse(report.at("records"))) add(record.at("log"));
  Texts lines = linesOf(folder_.read("Error.log"));
  std::ranges::sort(lines);
  std::ranges::sort(kept);
  CHECK(std::ranges::includes(lines, kept));
  if (allKept) CHECK(lines == kept);
}

void Truth::checkNothingTwice() const {
  Texts lines = linesOf(folder_.read("ledger"));
  std::ranges::sort(lines);
  CAPTURE(lines);
  CHECK(std::ranges::adjacent_find(lines) == lines.end());
}

}  // namespace velk
