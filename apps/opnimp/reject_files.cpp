#include "apps/opnimp/reject_files.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "apps/opnimp/failures.h"
#include "platform/text.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view lineEnd = "\r\n";

std::string unfinished(const std::string& path) {
  return path + ".opnimp-new";
}

[[noreturn]] void cannotWrite(const std::string& path) {
  throw CannotOpen("the rejects file " + path +
                   " cannot be written. Check --rejects, its folder and the space there");
}

void writeBytes(const std::string& path, const std::string& bytes) {
  std::ofstream file(unfinished(path), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) cannotWrite(path);
}

using Chooses = bool (*)(Outcome);

/// Header and chosen records; nothing when none is chosen.
std::optional<std::string> recordsOf(const InputRecords& input, const Traces& traces,
                                     Chooses chosen) {
  std::string bytes;
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    if (!chosen(traces.records[record].outcome)) continue;
    bytes.append(input.bytesOf(record)).append(lineEnd);
  }
  if (bytes.empty()) return std::nullopt;
  return std::string(input.header()).append(lineEnd).append(bytes);
}

std::string csvQuoted(std::string_view text) {
  std::string field = "\"";
  for (const char c : text) {
    if (c == '"') field += '"';
    field += c;
  }
  return field + '"';
}

std::string reasons(const InputRecords& input, const Traces& traces) {
  std::string text = std::string("Record,Line,Outcome,Reason").append(lineEnd);
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    const RecordTrace& trace = traces.records[record];
    if (!isRefused(trace.outcome) && !isDoubtful(trace.outcome)) continue;
    text += std::to_string(record + 1) + ',' + std::to_string(input.place(record).line) + ',';
    text.append(outcomeName(trace.outcome)).append(",").append(csvQuoted(reasonOf(trace)));
    text.append(lineEnd);
  }
  return CodePage::windows1252().encode(text);
}

bool isNotReached(Outcome outcome) {
  return outcome == Outcome::NotReached;
}

std::array<std::string, 4> pathsOf(const std::string& path) {
  return {path, path + ".reasons.csv", path + ".check.csv", path + ".rest.csv"};
}

/// Records that nobody has looked at yet must not be written over.
void requireMoved(const std::string& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return;
  throw UsageError(path + " is from an earlier run; move it first");
}

}  // namespace

std::vector<std::string> RejectFiles::touched(const std::string& path) {
  std::vector<std::string> all;
  for (const std::string& target : pathsOf(path)) {
    all.push_back(target);
    all.push_back(unfinished(target));
  }
  return all;
}

RejectFiles::RejectFiles(const std::string& path, bool dryRun)
    : paths_(pathsOf(path)), dryRun_(dryRun) {
  if (dryRun) {
    requireMoved(paths_[0]);  // what a real run refused must not give way to a trial
  } else {
    requireMoved(paths_[2]);
    requireMoved(paths_[3]);
  }
  for (const std::string& target : paths_) {
    std::error_code error;
    if (fs::exists(target, error) && !fs::is_regular_file(target, error)) cannotWrite(target);
  }
  try {
    for (const std::string& target : paths_) writeBytes(target, "");
  } catch (...) {
    removeUnfinished();
    throw;
  }
}

void RejectFiles::removeUnfinished() {
  for (const std::string& target : paths_) {
    std::error_code ignored;
    fs::remove(unfinished(target), ignored);
  }
}

std::vector<std::string> RejectFiles::write(const InputRecords& input, const Traces& traces) {
  const std::string header = std::string(input.header()).append(lineEnd);
  put(paths_[0], recordsOf(input, traces, isRefused).value_or(header));
  put(paths_[1], reasons(input, traces));
  if (!dryRun_) {
    put(paths_[2], recordsOf(input, traces, isDoubtful));
    put(paths_[3], recordsOf(input, traces, isNotReached));
  }
  return written_;
}

void RejectFiles::put(const std::string& path, const std::optional<std::string>& bytes) {
  if (!bytes) return;
  std::error_code error;
  writeBytes(path, *bytes);
  fs::rename(unfinished(path), path, error);
  if (error) cannotWrite(path);
  written_.push_back(path);
}

}  // namespace velk
