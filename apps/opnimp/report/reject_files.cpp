#include "apps/opnimp/report/reject_files.h"

#include <filesystem>
#include <iomanip>
#include <sstream>
#include <system_error>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/records/file_bytes.h"
#include "base/errors.h"
#include "base/text.h"
#include "platform/native/native_files.h"

namespace velk {

namespace {

constexpr std::string_view lineEnd = "\r\n";

/// Does what may fail for the file at `path`.
template <class Action>
void attempt(const std::string& path, Action action) {
  try {
    action();
  } catch (const RuntimeError& error) {
    throw CannotOpen("the rejects file " + path +
                     " cannot be written: " + fileErrorText(path, error) +
                     ". Check --rejects, its folder and the space there");
  }
}

std::vector<std::size_t> recordsOf(const Traces& traces, bool (*chosen)(Outcome)) {
  std::vector<std::size_t> records;
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    if (chosen(traces.records[record].outcome)) records.push_back(record);
  }
  return records;
}

std::string reasons(const InputRecords& input, const Traces& traces) {
  std::string placeTitle(input.placeWord());
  placeTitle.replace(0, 1, upperAscii(placeTitle.substr(0, 1)));
  std::ostringstream text;
  text << "Record," << placeTitle << ",Outcome,Reason" << lineEnd;
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    const RecordTrace& trace = traces.records[record];
    if (!isRefused(trace.outcome) && !isDoubtful(trace.outcome)) continue;
    text << record + 1 << ',' << input.place(record).line << ',' << outcomeName(trace.outcome)
         << ',' << std::quoted(reasonOf(trace), '"', '"') << lineEnd;
  }
  // In the code page of all the comma-separated files that are imported.
  return CodePage::windows1252().encode(text.str());
}

bool isNotReached(Outcome outcome) {
  return outcome == Outcome::NotReached;
}

/// Records that nobody has looked at yet must not be written over.
void requireMoved(const std::string& path) {
  std::error_code error;
  // A device such as /dev/null may be named again and again.
  if (!std::filesystem::is_regular_file(path, error)) return;
  throw UsageError(path + " is from an earlier run; move it first");
}

}  // namespace

std::vector<std::string> RejectFiles::touched(const std::string& path, FileFormat format) {
  const std::string extension = format == FileFormat::Workbook ? ".xls" : ".csv";
  return {path, path + ".reasons.csv", path + ".check" + extension, path + ".rest" + extension};
}

RejectFiles::RejectFiles(const std::string& path, FileFormat format, bool dryRun)
    : paths_(touched(path, format)), dryRun_(dryRun) {
  if (dryRun) {
    requireMoved(paths_[Rejects]);  // what a real run refused must not give way to a trial
  } else {
    requireMoved(paths_[Check]);
    requireMoved(paths_[Rest]);
  }
  NativeFileSystem files;
  // A replacement that is never closed changes nothing.
  for (const std::string& target : paths_) attempt(target, [&] { files.openReplacement(target); });
}

// Each for itself: one that fails must not cost the others.
RejectFiles::Written RejectFiles::write(const InputRecords& input, const Traces& traces) const {
  NativeFileSystem files;
  Written written;
  const auto put = [&](const std::string& path, const auto& writeIt) {
    try {
      attempt(path, writeIt);
      written.paths.push_back(path);
    } catch (const CannotOpen& error) {
      written.failure.append(written.failure.empty() ? "" : "; ").append(error.what());
    }
  };
  const auto putRecords = [&](const std::string& path, const std::vector<std::size_t>& records) {
    put(path, [&] { input.write(files, path, records); });
  };
  // Written even if there is no such record: else an earlier run's rejects would remain there.
  putRecords(paths_[Rejects], recordsOf(traces, isRefused));
  put(paths_[Reasons], [&] { writeFile(files, paths_[Reasons], reasons(input, traces)); });
  // Nothing was posted: there is nothing to look up, and the whole file is still to be imported.
  if (dryRun_) return written;
  const auto doubtful = recordsOf(traces, isDoubtful);
  const auto notReached = recordsOf(traces, isNotReached);
  if (!doubtful.empty()) putRecords(paths_[Check], doubtful);
  if (!notReached.empty()) putRecords(paths_[Rest], notReached);
  return written;
}

}  // namespace velk
