#include "apps/opnimp/report/reject_files.h"

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <optional>
#include <sstream>
#include <system_error>
#include <utility>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/claimed_name.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/records/later_records.h"
#include "base/errors.h"
#include "base/text.h"
#include "platform/native/native_files.h"

namespace velk {

namespace {

template <class Action>
void writingRejects(const std::string& path, Action action) {
  writing("the rejects file", path, "--rejects", action);
}

std::vector<std::size_t> recordsOf(const Traces& traces, bool (*chosen)(Outcome)) {
  std::vector<std::size_t> records;
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    const RecordTrace& trace = traces.records[record];
    if (chosen(trace.outcome) && !isLeftToLater(trace)) records.push_back(record);
  }
  return records;
}

/// A reason may begin with a text of the file, which a spreadsheet would take for a formula.
std::string asNoFormula(std::string text) {
  if (text.find_first_of("=+-@") == 0) text.insert(0, "'");
  return text;
}

std::string reasons(const InputRecords& input, const Traces& traces) {
  std::string placeTitle(input.placeWord());
  placeTitle.replace(0, 1, upperAscii(placeTitle.substr(0, 1)));
  std::ostringstream text;
  text << "Record," << placeTitle << ",Outcome,Reason" << csvLineEnd;
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    const RecordTrace& trace = traces.records[record];
    if (!isRefused(trace.outcome) && !isDoubtful(trace.outcome)) continue;
    if (isLeftToLater(trace)) continue;
    text << record + 1 << ',' << input.place(record).line << ',' << outcomeName(trace.outcome)
         << ',' << std::quoted(asNoFormula(printable(reasonOf(trace))), '"', '"') << csvLineEnd;
  }
  // In the code page of all the comma-separated files that are imported.
  return CodePage::windows1252().encode(text.str());
}

bool isNotReached(Outcome outcome) {
  return outcome == Outcome::NotReached;
}

/// Somebody else has made a file of that name since the run began.
struct NameTaken : CannotOpen {
  using CannotOpen::CannotOpen;
};

NameTaken taken(const std::string& path, bool dryRun) {
  return NameTaken("the rejects file " + path +
                   " was not written: somebody else has made a file "
                   "of that name since the run began; " +
                   (dryRun ? "choose another one and try again"
                           : "`opnimp rejects` writes it under another one"));
}

/// Writes a file under a name that is the run's own already, or becomes it. `own` has room.
template <class Write>
void writeOwn(std::vector<std::string>& own, const std::string& path, bool dryRun, Write writeIt) {
  std::string name = path;  // before the file is there: to remember it takes memory
  NativeFileSystem files;
  std::optional<ClaimedName> claim;
  if (std::ranges::find(own, path) == own.end()) claim.emplace(files, path);
  if (claim && !claim->isNew()) throw taken(path, dryRun);
  refusingWithoutMemory(writeIt);
  if (!claim) return;
  claim->keep();
  own.push_back(std::move(name));
}

/// Both kinds in one file, in the order of the whole file.
void writeDoubtful(FileSystem& files, const std::string& path, const InputRecords& input,
                   const std::vector<std::size_t>& doubtful,
                   std::span<const std::size_t> setApart) {
  const LaterRecords* const later = asPart(input);
  if (later == nullptr) return input.write(files, path, doubtful);
  std::vector<std::size_t> records(setApart.begin(), setApart.end());
  for (const std::size_t record : doubtful) records.push_back(later->first() + record);
  later->whole().write(files, path, records);
}

}  // namespace

std::vector<std::string> RejectFiles::touched(const std::string& path, FileFormat format) {
  const std::string extension = format == FileFormat::Workbook ? ".xls" : ".csv";
  return {path, path + ".reasons.csv", path + ".check" + extension, path + ".rest" + extension};
}

RejectFiles::RejectFiles(const std::string& path, FileFormat format, bool dryRun)
    : paths_(touched(path, format)), dryRun_(dryRun) {
  // Records that nobody has looked at yet must not be written over.
  for (const std::string& target : paths_) requireNoFile(target);
  NativeFileSystem files;
  // A replacement that is never closed changes nothing.
  for (const std::string& target : paths_)
    writingRejects(target, [&] { files.openReplacement(target); });
}

// Each for itself: one that fails must not cost the others.
RejectFiles::Written RejectFiles::write(const InputRecords& input, const Traces& traces,
                                        std::span<const std::size_t> setApart) {
  NativeFileSystem files;
  Written written;
  bool isTaken = false;
  const auto put = [&](const std::string& path, const auto& writeIt) {
    try {
      writingRejects(path, [&] {
        own_.reserve(paths_.size());
        writeOwn(own_, path, dryRun_, writeIt);
      });
      written.paths.push_back(path);
    } catch (const CannotOpen& error) {
      isTaken = dynamic_cast<const NameTaken*>(&error) != nullptr;
      written.failure.append(written.failure.empty() ? "" : "; ").append(error.what());
    }
  };
  const auto putRecords = [&](const std::string& path, const std::vector<std::size_t>& records) {
    put(path, [&] { input.write(files, path, records); });
  };
  // Written even if there is no such record: that there is none is an answer, too.
  putRecords(paths_[Rejects], recordsOf(traces, isRefused));
  // By another run: its records with the reasons of this one would be corrected wrongly.
  if (isTaken) return written;
  put(paths_[Reasons], [&] { writeFile(files, paths_[Reasons], reasons(input, traces)); });
  // Nothing was posted: there is nothing to look up, and the whole file is still to be imported.
  if (dryRun_) return written;
  const auto doubtful = recordsOf(traces, isDoubtful);
  const auto notReached = recordsOf(traces, isNotReached);
  if (!doubtful.empty() || !setApart.empty()) {
    put(paths_[Check], [&] { writeDoubtful(files, paths_[Check], input, doubtful, setApart); });
  }
  if (!notReached.empty()) putRecords(paths_[Rest], notReached);
  return written;
}

}  // namespace velk
