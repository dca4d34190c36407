#include "apps/opnimp/report/reject_files.h"

#include <filesystem>
#include <system_error>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/records/file_bytes.h"
#include "base/errors.h"
#include "base/text.h"
#include "platform/native/native_files.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view lineEnd = "\r\n";

std::string unfinished(const std::string& path) {
  return path + ".opnimp-new";
}

[[noreturn]] void cannotWrite(const std::string& path, const std::string& why) {
  throw CannotOpen("the rejects file " + path + " cannot be written: " + why +
                   ". Check --rejects, its folder and the space there");
}

using Chooses = bool (*)(Outcome);

std::vector<std::size_t> recordsOf(const Traces& traces, Chooses chosen) {
  std::vector<std::size_t> records;
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    if (chosen(traces.records[record].outcome)) records.push_back(record);
  }
  return records;
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
  std::string placeTitle(input.placeWord());
  placeTitle.replace(0, 1, upperAscii(placeTitle.substr(0, 1)));
  std::string text = "Record," + placeTitle + ",Outcome,Reason" + std::string(lineEnd);
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

std::array<std::string, 4> pathsOf(const std::string& path, FileFormat format) {
  const std::string extension = "." + std::string(extensionOf(format));
  return {path, path + ".reasons.csv", path + ".check" + extension, path + ".rest" + extension};
}

/// Records that nobody has looked at yet must not be written over.
void requireMoved(const std::string& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return;
  throw UsageError(path + " is from an earlier run; move it first");
}

}  // namespace

std::vector<std::string> RejectFiles::touched(const std::string& path, FileFormat format) {
  std::vector<std::string> all;
  for (const std::string& target : pathsOf(path, format)) {
    all.push_back(target);
    all.push_back(unfinished(target));
  }
  return all;
}

RejectFiles::RejectFiles(const std::string& path, FileFormat format, bool dryRun)
    : paths_(pathsOf(path, format)), dryRun_(dryRun) {
  if (dryRun) {
    requireMoved(paths_[0]);  // what a real run refused must not give way to a trial
  } else {
    requireMoved(paths_[2]);
    requireMoved(paths_[3]);
  }
  for (const std::string& target : paths_) {
    std::error_code error;
    if (fs::exists(target, error) && !fs::is_regular_file(target, error)) {
      cannotWrite(target, "it is no file");
    }
  }
  for (const std::string& target : paths_) {
    try {
      NativeFileSystem files;
      writeFile(files, unfinished(target), "");
    } catch (const RuntimeError& error) {
      removeUnfinished();
      cannotWrite(target, error.description());
    }
  }
}

void RejectFiles::removeUnfinished() {
  for (const std::string& target : paths_) {
    std::error_code ignored;
    fs::remove(unfinished(target), ignored);
  }
}

std::vector<std::string> RejectFiles::write(const InputRecords& input, const Traces& traces) {
  put(paths_[0], [&](FileSystem& files, const std::string& path) {
    input.write(files, path, recordsOf(traces, isRefused));
  });
  put(paths_[1], [&](FileSystem& files, const std::string& path) {
    writeFile(files, path, reasons(input, traces));
  });
  if (!dryRun_) {
    putRecords(paths_[2], input, recordsOf(traces, isDoubtful));
    putRecords(paths_[3], input, recordsOf(traces, isNotReached));
  }
  return written_;
}

void RejectFiles::putRecords(const std::string& path, const InputRecords& input,
                             const std::vector<std::size_t>& records) {
  if (records.empty()) return;
  put(path, [&](FileSystem& files, const std::string& unfinishedPath) {
    input.write(files, unfinishedPath, records);
  });
}

template <class Write>
void RejectFiles::put(const std::string& path, Write write) {
  try {
    NativeFileSystem files;
    write(files, unfinished(path));
  } catch (const RuntimeError& error) {
    cannotWrite(path, error.description());
  }
  std::error_code error;
  fs::rename(unfinished(path), path, error);
  if (error) cannotWrite(path, error.message());
  written_.push_back(path);
}

}  // namespace velk
