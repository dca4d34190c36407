// The files that a run leaves for the records it did not post:
//   FILE              refused and failed records, to be corrected and imported again
//   FILE.reasons.csv  for each of those, and of the doubtful ones, its line and what is wrong
//   FILE.check.csv    partial and unknown records: importing them again could post them twice
//   FILE.rest.csv     records not reached, to be imported later
// What a later run of the same file reached is in none but the .check file.
// All but the reasons have the format of the file that was imported, and its header: .check.xls and
// .rest.xls for a workbook. Each takes its place only when it is written as a whole.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/records/input_records.h"

namespace velk {

class RejectFiles {
 public:
  enum File : std::size_t { Rejects, Reasons, Check, Rest };

  /// Makes sure that all four can be written; raises CannotOpen. `path` is FILE. UsageError when
  /// one of them is there already: none is ever replaced.
  RejectFiles(const std::string& path, FileFormat format, bool dryRun);

  struct Written {
    std::vector<std::string> paths;
    std::string failure;  ///< of those that could not be; empty: there are none
  };

  /// The paths of all four, by File.
  static std::vector<std::string> touched(const std::string& path, FileFormat format);

  /// Writes FILE and its reasons, and the .check and .rest files where there is something for them.
  /// `setApart`: records before those of `input`, for the .check file. Once more, where the memory
  /// ran out on the way: what was written then is written anew.
  Written write(const InputRecords& input, const Traces& traces,
                std::span<const std::size_t> setApart = {});

 private:
  std::vector<std::string> paths_;
  std::vector<std::string> own_;  // written already
  bool dryRun_;
};

}  // namespace velk
