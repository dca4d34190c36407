// A transaction around a dry run, which is always taken back.
#pragma once

#include "platform/database.h"

namespace velk {

// Procedures that post are not run in a dry run. Checks and queries are: should one of them change
// something, this takes it back.
class DryRun {
 public:
  /// Raises CannotOpen where there are no transactions.
  explicit DryRun(OwnConnection& database);
  ~DryRun();
  DryRun(const DryRun&) = delete;
  DryRun& operator=(const DryRun&) = delete;

 private:
  OwnConnection& database_;
};

}  // namespace velk
