// What a run over the failing driver says, held against what was done.
#pragma once

#include <string>

#include "tests/support/checks.h"
#include "tests/support/json_value.h"
#include "tests/support/temporary_folder.h"

namespace velk {

/// The lines of a text, without their line feeds.
Texts linesOf(const std::string& text);

/// In the folder are the driver's "ledger", "Error.log" and the files of --rejects, "r.csv" or
/// "r.xls". The records are lines of the file; what a procedure changes for one begins with its
/// first field, and there are two such changes.
class Truth {
 public:
  Truth(const TemporaryFolder& folder, Texts records, std::string rejects = "r.csv")
      : folder_(folder), records_(std::move(records)), rejects_(std::move(rejects)) {}

  /// How many changes of the record at a position are there to stay.
  std::size_t changes(std::size_t record) const;
  /// Nothing is said to be absent that is there, and nothing to be there that is not: changes,
  /// files, lines of the log.
  void check(const Json& report) const;
  void checkNothingTwice() const;

 private:
  /// By its position in the report, and in the file.
  void checkRecord(const Json& report, std::size_t position, std::size_t record) const;
  void checkLog(const Json& report) const;

  const TemporaryFolder& folder_;
  Texts records_;
  std::string rejects_;
};

}  // namespace velk
